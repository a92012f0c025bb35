#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : mPath( ( fs::canonical( fs::temp_directory_path() ) / "test-XXXXXX" ).string() )
{
    if ( mkdtemp( mPath.data() ) == nullptr )
        throw std::system_error( errno, std::generic_category(), mPath );
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    auto const options = fs::directory_options::skip_permission_denied;
    for ( fs::recursive_directory_iterator item( mPath, options, ignored ), end; item != end;
          item.increment( ignored ) )
        if ( item->symlink_status( ignored ).type() == fs::file_type::directory )
            fs::permissions( item->path(), fs::perms::owner_all, fs::perm_options::add, ignored );
    fs::remove_all( mPath, ignored );
}

std::string Shell( std::string const& folder, std::string const& commands )
{
    FILE* const output = popen( ( "set -e; cd " + folder + "; " + commands ).c_str(), "r" );
    std::string bytes;
    for ( int byte; ( byte = getc( output ) ) != EOF; )
        bytes += static_cast<char>( byte );
    if ( pclose( output ) != 0 )
        throw std::runtime_error( commands );
    return bytes;
}
