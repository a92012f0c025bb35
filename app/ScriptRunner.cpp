#include "app/ScriptRunner.h"

#include "app/CommandWait.h"
#include "linux/AdministratorRights/CommandWords.h"
#include "platform/AutoCFString.h"
#include "platform/AutoCFURL.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"

#include <CoreFoundation/CFBundle.h>

#include <string>
#include <vector>

namespace
{

std::string PathForResource( char const* name, char const* type )
{
    AutoCFString const resourceName = MakeCFString( name, kCFStringEncodingUTF8 );
    AutoCFString const resourceType = MakeCFString( type, kCFStringEncodingUTF8 );
    AutoCFURL const url( CFBundleCopyResourceURL(
        CFBundleGetMainBundle(), resourceName.Get(), resourceType.Get(), nullptr ) );
    if ( url.Get() == nullptr )
    {
        return "(null)";
    }
    AutoCFString const path = FileSystemPath( url.Get(), kCFURLPOSIXPathStyle );
    return MakeString( path.Get(), kCFStringEncodingUTF8, 0 );
}

// A path that is not one plain word breaks the command line, which could name another program then.
bool SplitsInto( std::string const& commandLine, std::vector<std::string> const& words )
{
    return SplitIntoWords( commandLine ) == words;
}

} // namespace

bool executeScriptSudo( char const* argument )
{
    try
    {
        std::string const path = PathForResource( "WUXAgentControlPanel", "sh" );
        std::string const commandLine = path + ' ' + argument;
        return SplitsInto( commandLine, { path, argument } ) && RunWhileWindowWaits( commandLine );
    }
    catch ( ... )
    {
        return false;
    }
}
