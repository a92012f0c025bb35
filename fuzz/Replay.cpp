#include "fuzz/FuzzInput.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace
{

void Replay( std::filesystem::path const& path )
{
    std::ifstream file( path, std::ios::binary );
    std::string const bytes{ std::istreambuf_iterator<char>( file ), {} };
    std::cout << path.string() << std::endl;
    LLVMFuzzerTestOneInput( reinterpret_cast<std::uint8_t const*>( bytes.data() ), bytes.size() );
}

} // namespace

/// Runs the target once for each file named, and for each file in the folders named. Fails if there
/// is none.
int main( int argc, char** argv )
{
    int count = 0;
    for ( int i = 1; i < argc; i++ )
    {
        if ( !std::filesystem::is_directory( argv[i] ) )
        {
            Replay( argv[i] );
            count++;
            continue;
        }
        for ( auto const& entry : std::filesystem::directory_iterator( argv[i] ) )
        {
            Replay( entry.path() );
            count++;
        }
    }
    std::cout << count << " inputs\n";
    return count > 0 ? 0 : 1;
}
