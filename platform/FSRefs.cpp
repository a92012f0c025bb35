#include "platform/FSRefs.h"

#include "platform/CFErrors.h"
#include "platform/OSError.h"

#include <CoreServices/CFURLFiles.h>
#include <CoreServices/MacErrors.h>

FSRef MakeFSRef( CFURLRef url )
{
    FSRef ref;
    if ( !CFURLGetFSRef( url, &ref ) )
    {
        throw CFURLGetFSRefFailed();
    }
    return ref;
}

FSRef MakeFSRef( FSSpec const& spec )
{
    FSRef ref;
    OSErr const result = FSpMakeFSRef( &spec, &ref );
    if ( result != noErr )
    {
        ThrowRealOSError( result );
    }
    return ref;
}
