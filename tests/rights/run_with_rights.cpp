// run_with_rights COMMAND_LINE: prints whether the command line ran as administrator without an
// error.

#include "linux/AdministratorRights/AdministratorCommand.h"

#include <cstdio>

int main( int argc, char** argv )
{
    if ( argc != 2 )
        return 64;
    std::puts( RunWithAdministratorRights( argv[1] ) ? "true" : "false" );
    return 0;
}
