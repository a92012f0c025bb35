#include "app/ApplicationMain.h"

#include "app/ControlPanel.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

#include <csignal>

int ApplicationMain( int argc, char** argv )
{
    // Ignored by the parent it would be ignored here as well, and a command's status lost.
    std::signal( SIGCHLD, SIG_DFL );

    QApplication application( argc, argv );
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
