#include "app/ControlPanel.h"
#include "app/Language.h"
#include "app/LocalizedString.h"
#include "app/TextField.h"
#include "app/WUXAgentDelegate.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLocale>
#include <QMap>

#include <cmath>
#include <gtest/gtest.h>

namespace
{

// Every text of the panel is 1.4 times as long, between marks.
class PseudoLanguage : public QTranslator
{
  public:
    PseudoLanguage() { QCoreApplication::installTranslator( this ); }

    bool isEmpty() const override { return false; }

    QString translate(
        char const* context, char const* key, char const* = nullptr, int = -1 ) const override
    {
        QString const text = key;
        return qstrcmp( context, "ControlPanel" ) != 0
                   ? QString()
                   : "[&" + text + ' ' + text.left( text.size() * 2 / 5 ) + ']';
    }
};

class Window : public ControlPanel
{
  public:
    explicit Window(
        int points = 11, Qt::LayoutDirection direction = QApplication::layoutDirection() )
    {
        QApplication::setLayoutDirection( direction );
        QFont font = QApplication::font();
        font.setPointSize( points );
        QApplication::setFont( font );
        show();
        findChild<QAbstractButton*>( "mAboutButton" )->click();
        ShowState( "Not running", "Start Agent" );
    }

    QList<QWidget*> Windows() { return { this, findChild<QWidget*>( "mAboutBox" ) }; }

    // Every part of both windows that shows a text.
    QList<QWidget*> Parts() const
    {
        auto const showsNone = []( QWidget const* part )
        { return !part->isVisible() || part->property( "text" ).toString().isEmpty(); };
        QList<QWidget*> parts = findChildren<QWidget*>();
        parts.removeIf( showsNone );
        return parts;
    }

    // As if there were no agent, whatever this machine has.
    void ShowState( char const* status, char const* button )
    {
        for ( auto const& [name, key] :
            { std::pair( "mAgentStatusText", status ), std::pair( "mPIDText", "N/A" ),
                std::pair( "mInstalledLocationText", "The WUXAgent is not installed" ) } )
        {
            findChild<TextField*>( name )->setStringValue( LocalizedString( key ) );
        }
        findChild<QAbstractButton*>( "mStopButton" )->setText( LocalizedString( button ) );
        QCoreApplication::processEvents();
    }
};

// Texts.

TEST( WindowTest, EveryTextGoesThroughTheTable )
{
    PseudoLanguage const pseudo;
    Window window;
    QList<QWidget*> const parts = window.Parts();
    EXPECT_EQ( parts.size(), 4 + 4 + 5 + 4 + 1 );
    for ( QWidget const* const widget : parts + window.Windows() )
    {
        for ( char const* const name :
            { "windowTitle", "text", "toolTip", "accessibleName", "accessibleDescription" } )
        {
            // Not translated: the "N/A" of the version.
            std::string const text = widget->property( name ).toString().toStdString();
            EXPECT_TRUE( text.empty() || ( text.front() == '[' && text.back() == ']' ) ||
                         widget->objectName() == "mVersionText" )
                << widget->objectName().toStdString() << ", " << name << ": " << text;
        }
    }
}

TEST( WindowTest, AKeyWithoutATranslationIsItsOwnText )
{
    Language const german( QLocale( "de" ), TABLES );
    EXPECT_EQ( LocalizedString( "Running" ).toStdString(), "Läuft" );
    EXPECT_EQ( LocalizedString( "No such key" ).toStdString(), "No such key" );
}

TEST( WindowTest, ACopyHasNoMnemonics )
{
    Language const japanese( QLocale( "ja" ), TABLES );
    Window window;
    window.findChild<QAbstractButton*>( "mCopyButton" )->click();
    EXPECT_TRUE( QGuiApplication::clipboard()->text().startsWith( "状態: 実行されていません\n" ) );
}

TEST( WindowTest, AClickOnSomethingElseDoesNothing )
{
    Window window;
    window.ShowState( "Restarting", "Stop Agent" );
    gAgentDelegate->performClick( &window );
    EXPECT_EQ( gAgentDelegate->wuxAgentStatusText()->text(), "Restarting" );
}

TEST( WindowTest, TheDirectionIsThatOfTheLanguageShown )
{
    auto const left = Qt::LeftToRight, right = Qt::RightToLeft;
    // There is no table "he", so it is English. What was before is by "-reverse".
    for ( auto const& [user, before, after] : { std::tuple( "en", left, left ),
              std::tuple( "ar", left, right ), std::tuple( "he", left, left ),
              std::tuple( "en", right, right ), std::tuple( "ar", right, left ) } )
    {
        QApplication::setLayoutDirection( before );
        Language const language( QLocale( user ), TABLES );
        QCoreApplication::processEvents();
        EXPECT_EQ( QApplication::layoutDirection(), after ) << user;
    }
}

// Sizes.

TEST( WindowTest, TheWindowsFitASmallScreen )
{
    for ( char const* const user : { "en", "de", "fr", "es", "it", "pt_BR", "ja", "zh_CN", "ar" } )
    {
        SCOPED_TRACE( user );
        Language const language( QLocale( user ), TABLES );
        Window window;
        window.ShowState( "Restarting", "Stop Agent" );
        for ( QWidget const* const shown : window.Windows() )
        {
            QSize const size = shown->sizeHint().expandedTo( shown->size() );
            EXPECT_LT( size.width(), 1024 );
            EXPECT_LT( size.height(), 768 - 60 ); // frame and task bar
        }
    }
}

void ExpectWhole( QWidget const& part )
{
    bool const isWrapped = part.hasHeightForWidth(), isField = part.inherits( "TextField" );
    QSize const needed( ( isWrapped || isField ? part.minimumSizeHint() : part.sizeHint() ).width(),
        isWrapped ? part.heightForWidth( part.width() ) : part.sizeHint().height() );
    QRect const place( part.mapTo( part.window(), QPoint() ), part.size() );
    EXPECT_TRUE(
        part.size().expandedTo( needed ) == part.size() && part.window()->rect().contains( place ) )
        << part.objectName().toStdString() << " has " << part.width() << "x" << part.height()
        << " and needs " << needed.width() << "x" << needed.height();
}

TEST( WindowTest, NothingIsClipped )
{
    PseudoLanguage const pseudo;
    for ( int const points : { 8, 11, 16, 24 } )
    {
        for ( auto const direction : { Qt::LeftToRight, Qt::RightToLeft } )
        {
            SCOPED_TRACE( testing::Message() << points << " pt, direction " << direction );
            Window window( points, direction );
            TextField usual;
            usual.setStringValue( "/Library/WUXAgent/WUXAgent.app" );
            EXPECT_LT(
                usual.fontMetrics().horizontalAdvance( usual.text() ), usual.sizeHint().width() );
            for ( QWidget* const shown : window.Windows() )
            {
                shown->resize( 1, 1 ); // to its minimum
            }
            QCoreApplication::processEvents();
            for ( QWidget const* const part : window.Parts() )
            {
                ExpectWhole( *part );
            }
        }
    }
}

// Colours.

double Luminance( QRgb color )
{
    auto const linear = []( int channel ) { return std::pow( channel / 255.0, 2.2 ); };
    return 0.2126 * linear( qRed( color ) ) + 0.7152 * linear( qGreen( color ) ) +
           0.0722 * linear( qBlue( color ) );
}

// Of what is drawn in the middle of `part` with what is most of its background.
double Contrast( QWidget& part )
{
    QRect const inner = part.rect().adjusted( 4, 4, -4, -4 );
    QRect const place( part.mapTo( part.window(), inner.topLeft() ), inner.size() );
    QImage const image = part.window()->grab( place ).toImage();
    QMap<QRgb, int> counts;
    for ( int i = 0; i < image.width() * image.height(); ++i )
    {
        ++counts[image.pixel( i % image.width(), i / image.width() )];
    }
    auto const mostFrequent = std::max_element( counts.begin(), counts.end() );
    double const background = Luminance( mostFrequent.key() ) + 0.05;
    double best = 1;
    for ( QRgb const color : counts.keys() )
    {
        double const drawn = Luminance( color ) + 0.05;
        best = std::max( { best, drawn / background, background / drawn } );
    }
    return best;
}

TEST( WindowTest, TextsCanBeReadInEveryPalette )
{
    QPalette const light( Qt::lightGray ), dark( QColor( 0x30, 0x30, 0x30 ) );
    QPalette darkFields = light;
    darkFields.setColor( QPalette::Base, Qt::black );
    darkFields.setColor( QPalette::Text, Qt::lightGray );
    Window window;
    for ( QPalette const& palette : { light, dark, darkFields, light } )
    {
        QApplication::setPalette( palette );
        QCoreApplication::processEvents();
        for ( QWidget* const part : window.Parts() )
        {
            part->setEnabled( true );
            EXPECT_GE( Contrast( *part ), 4.5 )
                << part->objectName().toStdString() << " on "
                << palette.color( QPalette::Window ).name().toStdString();
        }
    }
    QApplication::setPalette( {} );
}

} // namespace
