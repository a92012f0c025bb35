#include "app/ApplicationMain.h"

int main( int argc, char** argv )
{
    return ApplicationMain( argc, argv );
}
