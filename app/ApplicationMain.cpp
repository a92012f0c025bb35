#include "app/ApplicationMain.h"

#include "app/ControlPanel.h"

#include <QApplication>
#include <QLocale>
#include <QPixmapCache>
#include <QTranslator>

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

    QTranslator translator;
    if ( translator.load( QLocale(), QStringLiteral( "WUXAgentControlPanel" ),
             QStringLiteral( "_" ),
             QCoreApplication::applicationDirPath() +
                 QStringLiteral( "/../share/WUXAgentControlPanel/translations" ) ) )
    {
        QCoreApplication::installTranslator( &translator );
    }

    ControlPanel panel;
    panel.show();
    return QApplication::exec();
}
