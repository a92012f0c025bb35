#include "app/ApplicationMain.h"

#include "app/ControlPanel.h"
#include "app/Language.h"

#include <QApplication>
#include <QIcon>
#include <QImageReader>
#include <QLocale>
#include <QPixmapCache>

#include <csignal>
#include <fontconfig/fontconfig.h>
#include <future>

int ApplicationMain( int argc, char** argv )
{
    // Ignored by the parent it would be ignored here as well, and a command's status lost.
    std::signal( SIGCHLD, SIG_DFL );

    // The fonts' configuration, which the first text needs, is read while the toolkit connects to
    // the display: it takes a good part of the start. Read by both at once it would be read twice.
    std::future<FcBool> const fonts = std::async( FcInit );
    QApplication application( argc, argv );
    fonts.wait();

    // What is drawn here is cheap to draw again. The cache would wake the idle panel by a timer.
    QPixmapCache::setCacheLimit( 0 );

    QCoreApplication::setApplicationName( QStringLiteral( "WUXAgentControlPanel" ) );
    QCoreApplication::setApplicationVersion( QStringLiteral( CONTROL_PANEL_VERSION ) );
    QGuiApplication::setDesktopFileName( QStringLiteral( "WUXAgentControlPanel" ) );

    QString const resources =
        QCoreApplication::applicationDirPath() + QStringLiteral( "/../share/" );
    Language const language(
        QLocale(), resources + QStringLiteral( "WUXAgentControlPanel/translations" ) );
    // The icon theme, which has the icon in every size, is first asked by the about box, and this
    // picture is read without a look for plugins: both would cost a part of the start.
    QString const icons = resources + QStringLiteral( "icons" );
    QIcon::setThemeSearchPaths( QIcon::themeSearchPaths() << icons );
    QImageReader icon(
        icons + QStringLiteral( "/hicolor/48x48/apps/WUXAgentControlPanel.png" ), "png" );
    icon.setAutoDetectImageFormat( false );
    QApplication::setWindowIcon( QPixmap::fromImage( icon.read() ) );

    ControlPanel panel;
    panel.show();
    return QApplication::exec();
}
