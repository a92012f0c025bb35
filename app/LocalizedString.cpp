#include "app/LocalizedString.h"

#include <QCoreApplication>

QString LocalizedString( char const* key )
{
    return QCoreApplication::translate( "ControlPanel", key );
}
