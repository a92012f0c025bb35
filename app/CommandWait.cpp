#include "app/CommandWait.h"

#include "linux/AdministratorRights/AdministratorCommand.h"

#include <QEventLoop>
#include <QSocketNotifier>

bool RunWhileWindowWaits( std::string const& commandLine )
{
    AdministratorCommand command( commandLine );
    if ( !command.Start() )
    {
        return false;
    }

    if ( command.EndDescriptor() != -1 )
    {
        QEventLoop loop;
        QSocketNotifier ended( command.EndDescriptor(), QSocketNotifier::Read );
        QObject::connect( &ended, &QSocketNotifier::activated, &loop, &QEventLoop::quit );
        loop.exec();
    }
    return command.Finish();
}
