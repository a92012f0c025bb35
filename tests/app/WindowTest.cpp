#include "app/ControlPanel.h"
#include "app/Language.h"
#include "app/LocalizedString.h"
#include "app/TextField.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLocale>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <cmath>
#include <gtest/gtest.h>

// So that failures can be read.
void PrintTo( QString const& text, std::ostream* out )
{
    *out << text.toStdString();
}

namespace
{

char const* const kLanguages[] = { "en", "de", "fr", "es", "it", "pt_BR", "ja", "zh_CN", "ar" };

// Every text of the panel is 1.4 times as long, between marks.
class PseudoLanguage : public QTranslator
{
  public:
    PseudoLanguage() { QCoreApplication::installTranslator( this ); }

    bool isEmpty() const override { return false; }

    QString translate(
        char const* context, char const* key, char const* = nullptr, int = -1 ) const override
    {
        QString const text = QString::fromUtf8( key );
        return qstrcmp( context, "ControlPanel" ) != 0
                   ? QString()
                   : "[&" + text + ' ' + text.left( text.size() * 2 / 5 ) + ']';
    }
};

class Window : public ControlPanel
{
  public:
    Window()
    {
        show();
        AboutBox().show();
        QCoreApplication::processEvents();
    }

    QDialog& AboutBox() const { return *findChild<QDialog*>( "mAboutBox" ); }

    // Every part of both windows that shows something; neither the layouts' nor the fields' own.
    QList<QWidget*> Parts() const
    {
        QList<QWidget*> parts;
        for ( QWidget* const widget : findChildren<QWidget*>() )
        {
            bool const isEmpty = qobject_cast<QLabel*>( widget ) && TextOf( *widget ).isEmpty();
            if ( widget->isVisible() && !widget->isWindow() && !isEmpty )
            {
                parts += widget;
            }
        }
        return parts;
    }

    static QString TextOf( QWidget const& part ) { return part.property( "text" ).toString(); }

    void ShowState( char const* button, char const* status )
    {
        findChild<QAbstractButton*>( "mStopButton" )->setText( LocalizedString( button ) );
        SetField( "mAgentStatusText", LocalizedString( status ) );
        SetField( "mInstalledLocationText", LocalizedString( "The WUXAgent is not installed" ) );
        SetField( "mPIDText", LocalizedString( "N/A" ) );
        QCoreApplication::processEvents();
    }

    void SetField( char const* name, QString const& text )
    {
        findChild<TextField*>( name )->setStringValue( text );
    }
};

struct WindowTest : testing::TestWithParam<char const*>
{
    WindowTest() { SetUpLook( 11, Qt::LeftToRight ); }

    ~WindowTest() override { QApplication::setPalette( {} ); }

    static void SetUpLook( int points, Qt::LayoutDirection direction )
    {
        QApplication::setLayoutDirection( direction );
        QFont font = QApplication::font();
        font.setPointSize( points );
        QApplication::setFont( font );
    }
};

// Texts.

TEST_F( WindowTest, EveryTextGoesThroughTheTable )
{
    PseudoLanguage const pseudo;
    Window window;
    window.ShowState( "Stop Agent", "Running" );
    auto const expectTranslated = []( QWidget const* widget, QString const& text )
    {
        EXPECT_TRUE( text.isEmpty() || ( text.startsWith( '[' ) && text.endsWith( ']' ) ) )
            << widget->objectName().toStdString() << ": " << text.toStdString();
    };
    expectTranslated( &window, window.windowTitle() );
    expectTranslated( &window.AboutBox(), window.AboutBox().windowTitle() );
    QList<QWidget*> const parts = window.Parts();
    EXPECT_EQ( parts.size(), 4 + 4 + 5 + 4 + 1 );
    for ( QWidget const* const part : parts )
    {
        expectTranslated( part, part->toolTip() );
        expectTranslated( part, part->accessibleName() );
        expectTranslated( part, part->accessibleDescription() );
        if ( part->objectName() != "mVersionText" ) // whose "N/A" is not translated
        {
            expectTranslated( part, Window::TextOf( *part ) );
        }
    }
}

TEST_F( WindowTest, AKeyWithoutATranslationIsItsOwnText )
{
    Language const german( QLocale( "de" ), TABLES );
    EXPECT_EQ( LocalizedString( "Close" ).remove( '&' ), QString::fromUtf8( "Schließen" ) );
    EXPECT_EQ( LocalizedString( "No such key" ), "No such key" );
}

TEST_F( WindowTest, TheDirectionIsThatOfTheLanguageShown )
{
    struct
    {
        char const* user;
        Qt::LayoutDirection before; // as by "-reverse"
        Qt::LayoutDirection after;
    } const rows[] = {
        { "en", Qt::LeftToRight, Qt::LeftToRight },
        { "ar", Qt::LeftToRight, Qt::RightToLeft },
        { "he", Qt::LeftToRight, Qt::LeftToRight }, // there is no table, so it is English
        { "en", Qt::RightToLeft, Qt::RightToLeft },
        { "ar", Qt::RightToLeft, Qt::LeftToRight },
    };

    for ( auto const& row : rows )
    {
        QApplication::setLayoutDirection( row.before );
        Language const language( QLocale( row.user ), TABLES );
        QCoreApplication::processEvents();
        EXPECT_EQ( QApplication::layoutDirection(), row.after ) << row.user;
    }
}

// What has a mnemonic in `window`: the captions and buttons of the panel itself.
QMap<QString, QString> TextsByMnemonic( Window const& window )
{
    QMap<QString, QString> texts;
    for ( QWidget const* const part : window.Parts() )
    {
        QString const text = Window::TextOf( *part );
        QString const key = QKeySequence::mnemonic( text ).toString();
        if ( part->window() == &window && !key.isEmpty() )
        {
            EXPECT_FALSE( texts.contains( key ) )
                << key.toStdString() << ": " << text.toStdString();
            texts[key] = text;
        }
    }
    return texts;
}

// Whether the mark, which the toolkit draws under a piece of its own, tears apart letters that
// join.
bool TearsLettersApart( QString const& text )
{
    auto const joins = []( QChar character, QList<QChar::JoiningType> const& types )
    { return types.contains( character.joiningType() ); };
    qsizetype const mark = text.indexOf( '&' );
    QString const padded = ' ' + QString( text ).remove( mark, 1 ) + ' ';
    QChar const before = padded[mark], marked = padded[mark + 1], after = padded[mark + 2];
    auto const dual = QChar::Joining_Dual, right = QChar::Joining_Right;
    return ( joins( before, { dual } ) && joins( marked, { dual, right } ) ) ||
           ( joins( marked, { dual } ) && joins( after, { dual, right } ) );
}

TEST_P( WindowTest, MnemonicsAreUniqueAndTheWindowsFitASmallScreen )
{
    ASSERT_TRUE(
        QFile::exists( QString( TABLES "/WUXAgentControlPanel_%1.qm" ).arg( GetParam() ) ) );
    Language const language( QLocale( GetParam() ), TABLES );
    Window window;
    for ( auto const& [button, status] :
        { std::pair{ "Stop Agent", "Restarting" }, std::pair{ "Start Agent", "Not running" } } )
    {
        window.ShowState( button, status );
        QMap<QString, QString> const texts = TextsByMnemonic( window );
        EXPECT_EQ( texts.size(), 4 + 5 );
        for ( QString const& text : texts )
        {
            EXPECT_FALSE( TearsLettersApart( text ) ) << text.toStdString();
        }
        for ( QWidget const* const shown :
            { static_cast<QWidget*>( &window ), static_cast<QWidget*>( &window.AboutBox() ) } )
        {
            QSize const size = shown->sizeHint().expandedTo( shown->size() );
            EXPECT_LT( size.width(), 1024 );
            EXPECT_LT( size.height(), 768 - 60 ); // frame and task bar
        }
    }
}

INSTANTIATE_TEST_SUITE_P( Languages, WindowTest, testing::ValuesIn( kLanguages ),
    []( auto const& instance ) { return std::string( instance.param ); } );

// Sizes.

void ExpectWhole( QWidget const& part )
{
    auto const* const label = qobject_cast<QLabel const*>( &part );
    auto const* const field = qobject_cast<TextField const*>( &part );
    bool const isWrapped = label != nullptr && label->wordWrap();
    int const width = field != nullptr ? field->minimumSizeHint().width()
                      : isWrapped      ? part.minimumSizeHint().width()
                                       : part.sizeHint().width();
    int const height = isWrapped ? part.heightForWidth( part.width() ) : part.sizeHint().height();
    QWidget const& window = *part.window();
    QRect const place( part.mapTo( &window, QPoint() ), part.size() );
    EXPECT_TRUE(
        part.width() >= width && part.height() >= height && window.rect().contains( place ) )
        << part.objectName().toStdString() << " has " << part.width() << "x" << part.height()
        << " and needs " << width << "x" << height;
}

TEST_F( WindowTest, NothingIsClipped )
{
    PseudoLanguage const pseudo;
    for ( int const points : { 8, 11, 16, 24 } )
    {
        for ( auto const direction : { Qt::LeftToRight, Qt::RightToLeft } )
        {
            SCOPED_TRACE( testing::Message() << points << " pt, direction " << direction );
            SetUpLook( points, direction );
            Window window;
            for ( QWidget* const shown :
                { static_cast<QWidget*>( &window ), static_cast<QWidget*>( &window.AboutBox() ) } )
            {
                shown->resize( 1, 1 ); // to its minimum
            }
            window.ShowState( "Start Agent", "Not running" );
            for ( QWidget const* const part : window.Parts() )
            {
                ExpectWhole( *part );
            }
        }
    }
}

TEST_F( WindowTest, UsualValuesAreShownWhole )
{
    for ( int const points : { 8, 11, 16 } )
    {
        SetUpLook( points, Qt::LeftToRight );
        TextField field;
        field.setStringValue( "/Library/WUXAgent/WUXAgent.app" );
        EXPECT_LT(
            field.fontMetrics().horizontalAdvance( field.text() ), field.sizeHint().width() );
    }
}

// Colours.

double Luminance( QRgb color )
{
    auto const linear = []( int channel )
    {
        double const part = channel / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow( ( part + 0.055 ) / 1.055, 2.4 );
    };
    return 0.2126 * linear( qRed( color ) ) + 0.7152 * linear( qGreen( color ) ) +
           0.0722 * linear( qBlue( color ) );
}

// Of what is drawn in the middle of `part` with what is most of its background.
double Contrast( QWidget& part )
{
    QRect const inner = part.rect().adjusted( 4, 4, -4, -4 );
    QImage const image =
        part.window()
            ->grab( { part.mapTo( part.window(), inner.topLeft() ), inner.size() } )
            .toImage();
    QMap<QRgb, int> counts;
    for ( int y = 0; y < image.height(); ++y )
    {
        for ( int x = 0; x < image.width(); ++x )
        {
            ++counts[image.pixel( x, y )];
        }
    }
    QRgb const background = std::max_element( counts.begin(), counts.end() ).key();
    double best = 1;
    for ( QRgb const color : counts.keys() )
    {
        double const a = Luminance( color ) + 0.05, b = Luminance( background ) + 0.05;
        best = std::max( best, std::max( a, b ) / std::min( a, b ) );
    }
    return best;
}

TEST_F( WindowTest, TextsCanBeReadInEveryPalette )
{
    QPalette const light( Qt::lightGray ), dark( QColor( 0x30, 0x30, 0x30 ) );
    QPalette darkFields = light;
    darkFields.setColor( QPalette::Base, Qt::black );
    darkFields.setColor( QPalette::Text, Qt::lightGray );
    Window window;
    window.ShowState( "Stop Agent", "Running" );
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
}

} // namespace
