#include "app/ControlPanel.h"

#include "app/Announcer.h"
#include "app/InputGate.h"
#include "app/WUXAgentDelegate.h"
#include "ui_ControlPanel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QShortcut>

#include <utility>

namespace
{

constexpr QSize kAboutIconSize( 64, 64 );
constexpr int kAboutCharacters = 45;

// "&Caption" or, where the letter is none of the caption's own, "Caption(&C)".
QString WithoutMnemonic( QString caption )
{
    static QRegularExpression const mark( QStringLiteral( "\\s*\\(&.\\)|&" ) );
    return caption.remove( mark );
}

} // namespace

ControlPanel::ControlPanel()
    : QDialog( nullptr, Qt::Window ), mForm( std::make_unique<Ui::ControlPanel>() )
{
    mForm->setupUi( this );

    // The delegate is made by the form, but no part of the window.
    mDelegate.reset( mForm->mDelegate );
    mDelegate->setParent( nullptr );

    ConnectOutlets();
    ConnectActions();
    FillAboutBox();
    mDelegate->awakeFromNib();
    mForm->mCloseButton->setFocus();

    mAnnouncer = std::make_unique<Announcer>( *this );
    connect( mForm->mAgentStatusText, &QLineEdit::textChanged, mAnnouncer.get(),
        [this] { mAnnouncer->Announce( mForm->mAgentStatusText->text() ); } );
}

ControlPanel::~ControlPanel() = default;

void ControlPanel::keyPressEvent( QKeyEvent* event )
{
    auto* const button = qobject_cast<QPushButton*>( focusWidget() );
    bool const isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if ( button != nullptr && isEnter && !event->isAutoRepeat() )
    {
        button->click();
        return;
    }
    QDialog::keyPressEvent( event );
}

void ControlPanel::ConnectOutlets()
{
    mDelegate->mAboutBox = mForm->mAboutBox;
    mDelegate->mAgentStatusText = mForm->mAgentStatusText;
    mDelegate->mInstalledLocationText = mForm->mInstalledLocationText;
    mDelegate->mVersionText = mForm->mVersionText;
    mDelegate->mPIDText = mForm->mPIDText;
    mDelegate->mStopButton = mForm->mStopButton;
    mDelegate->mRestartButton = mForm->mRestartButton;
    mDelegate->mCloseButton = mForm->mCloseButton;
}

void ControlPanel::ConnectActions()
{
    for ( QPushButton* const button :
        { mForm->mStopButton, mForm->mRestartButton, mForm->mCloseButton } )
    {
        InputGate::OnClick( *button, [this, button] { mDelegate->performClick( button ); } );
    }
    InputGate::OnClick( *mForm->mAboutButton, [this] { OpenAboutBox(); } );
    InputGate::OnClick( *mForm->mAboutCloseButton, [this] { mForm->mAboutBox->hide(); } );
    InputGate::OnClick( *mForm->mCopyButton, [this] { CopyDetails(); } );
    auto* const copy = new QShortcut( Qt::CTRL | Qt::SHIFT | Qt::Key_C, this );
    connect( copy, &QShortcut::activated, mForm->mCopyButton, &QAbstractButton::click );

    auto* const closeAboutBox = new QShortcut( QKeySequence::Close, mForm->mAboutBox );
    connect( closeAboutBox, &QShortcut::activated, mForm->mAboutBox, &QWidget::hide );

    installEventFilter( mDelegate.get() );
    for ( auto const key : { QKeySequence::Cancel, QKeySequence::Close, QKeySequence::Quit } )
    {
        auto* const shortcut = new QShortcut( key, this );
        connect( shortcut, &QShortcut::activated, mDelegate.get(),
            [this] { mDelegate->performClose(); } );
    }
}

void ControlPanel::FillAboutBox()
{
    mForm->mAboutVersion->setText(
        mForm->mAboutVersion->text().arg( QCoreApplication::applicationVersion() ) );
    mForm->mAboutText->setMinimumWidth( fontMetrics().averageCharWidth() * kAboutCharacters );
    mForm->mAboutCloseButton->setFocus();
}

void ControlPanel::OpenAboutBox()
{
    QIcon const icon =
        QIcon::fromTheme( QCoreApplication::applicationName(), QGuiApplication::windowIcon() );
    mForm->mAboutIcon->setPixmap( icon.pixmap( kAboutIconSize ) );
    mForm->mAboutBox->show();
    mForm->mAboutBox->raise();
    mForm->mAboutBox->activateWindow();
}

void ControlPanel::CopyDetails()
{
    QString lines;
    for ( auto const& [caption, field] :
        { std::pair( mForm->mAgentStatusTextCaption, mForm->mAgentStatusText ),
            std::pair( mForm->mInstalledLocationTextCaption, mForm->mInstalledLocationText ),
            std::pair( mForm->mVersionTextCaption, mForm->mVersionText ),
            std::pair( mForm->mPIDTextCaption, mForm->mPIDText ) } )
    {
        lines += WithoutMnemonic( caption->text() ) + QStringLiteral( ": " ) +
                 field->text().simplified() + QLatin1Char( '\n' );
    }
    QGuiApplication::clipboard()->setText( lines );
}
