#include "app/ControlPanel.h"

#include "app/InputGate.h"
#include "app/WUXAgentDelegate.h"
#include "ui_ControlPanel.h"

#include <QShortcut>

ControlPanel::ControlPanel() : mForm( std::make_unique<Ui::ControlPanel>() )
{
    mForm->setupUi( this );

    // The delegate is made by the form, but no part of the window.
    mDelegate.reset( mForm->mDelegate );
    mDelegate->setParent( nullptr );

    ConnectOutlets();
    ConnectActions();
    mDelegate->awakeFromNib();
    mForm->mCloseButton->setFocus();
}

ControlPanel::~ControlPanel() = default;

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
    installEventFilter( mDelegate.get() );
    for ( auto const key : { QKeySequence::Cancel, QKeySequence::Close, QKeySequence::Quit } )
    {
        auto* const shortcut = new QShortcut( key, this );
        connect( shortcut, &QShortcut::activated, mDelegate.get(),
            [this] { mDelegate->performClose(); } );
    }
}
