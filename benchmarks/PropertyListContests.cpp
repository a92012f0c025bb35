// First, for the sake of Python's header.
#include "benchmarks/PropertyListPeers.h"

#include "benchmarks/Contest.h"

#include <random>

namespace
{

using namespace PropertyListTrees;

// Reads every document, counts the root's keys, looks some values up and releases everything. A
// Tree is made of a document and offers its Root, and of a node the Count of its keys, the Child
// under a key, the Length of its text and its Integer.
template<class Tree>
std::uint64_t ReadAll( Documents const& documents )
{
    std::uint64_t digest = 0;
    for ( Document const& document : documents )
    {
        Tree const tree( document );
        if ( !tree.Root() )
            throw std::runtime_error( "a document is refused" );
        auto const find = [&tree]( Path const& path )
        {
            auto node = tree.Root();
            for ( std::string const& key : path )
                node = Tree::Child( node, key );
            return node;
        };
        digest += Tree::Count( tree.Root() );
        for ( Path const& path : document.strings )
            digest = digest * 31 + Tree::Length( find( path ) );
        for ( Path const& path : document.integers )
            digest = digest * 31 + Tree::Integer( find( path ) );
    }
    return digest;
}

using Random = std::mt19937;

std::string Word( Random& random, std::size_t atLeast, std::size_t atMost )
{
    std::string word( atLeast + random() % ( atMost - atLeast + 1 ), '\0' );
    for ( char& letter : word )
        letter = "abcdefghijklmnopqrstuvwxyzABCDEF0123456789-._ /"[random() % 47];
    return word;
}

std::string Number( Random& random, unsigned below )
{
    return std::to_string( random() % below );
}

std::string Date( Random& random )
{
    auto const two = [&random]( unsigned first, unsigned count )
    { return std::to_string( 100 + first + random() % count ).substr( 1 ); };
    return "20" + two( 0, 30 ) + "-" + two( 1, 12 ) + "-" + two( 1, 28 ) + "T" + two( 0, 24 ) +
           ":" + two( 0, 60 ) + ":" + two( 0, 60 ) + "Z";
}

std::string Entry( std::string const& indent, std::string const& key, std::string const& element,
    std::string const& text )
{
    return indent + "<key>" + key + "</key>\n" + indent + "<" + element + ">" + text + "</" +
           element + ">\n";
}

std::string Whole( std::string const& entries )
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Example//DTD PLIST 1.0//EN\" "
           "\"http://www.example.org/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n" +
           entries + "</dict>\n</plist>\n";
}

// What an installed program says about itself, about 1 KB.
Document VersionFile( Random& random )
{
    std::string const version = Number( random, 20 ) + "." + Number( random, 100 );
    std::string entries =
        Entry( "\t", "CFBundleExecutable", "string", Word( random, 4, 16 ) ) +
        Entry( "\t", "CFBundleIdentifier", "string", "org.example." + Word( random, 8, 24 ) ) +
        Entry( "\t", "CFBundleName", "string", Word( random, 4, 16 ) );
    char const* const optional[] = { "CFBundleGetInfoString", "ProjectName", "SourceVersion",
        "BuildVersion", "LSMinimumSystemVersion", "NSHumanReadableCopyright", "DTCompiler" };
    for ( char const* key : optional )
        if ( random() % 4 != 0 )
            entries += Entry( "\t", key, "string", Word( random, 3, 40 ) );
    entries += "\t<key>CFBundleDocumentTypes</key>\n\t<array>\n";
    for ( unsigned i = random() % 4; i > 0; --i )
        entries += "\t\t<string>" + Word( random, 3, 10 ) + "</string>\n";
    entries += "\t</array>\n";
    entries += Entry( "\t", "BuildNumber", "integer", Number( random, 100000 ) );
    if ( random() % 2 != 0 )
        entries += Entry( "\t", "ReleaseDate", "date", Date( random ) );
    entries += "\t<key>NSHighResolutionCapable</key>\n\t<true/>\n";
    entries += Entry( "\t", "CFBundleShortVersionString", "string", version );
    return { Whole( entries ), { { "CFBundleShortVersionString" }, { "CFBundleName" } },
        { { "BuildNumber" } } };
}

// 100,000 keys of one dictionary.
Document Settings( Random& random )
{
    std::string entries;
    std::vector<Path> paths;
    for ( unsigned i = 0; i < 100000; ++i )
    {
        std::string const key = Word( random, 4, 20 ) + "." + std::to_string( i );
        entries += Entry( "\t", key, "string", Word( random, 10, 60 ) );
        if ( i % 10000 == 77 )
            paths.push_back( { key } );
    }
    return { Whole( entries ), std::move( paths ), {} };
}

// 12,500 dictionaries of 8 keys each, with values of all kinds.
Document Inventory( Random& random )
{
    std::string entries;
    std::vector<Path> strings;
    std::vector<Path> integers;
    for ( unsigned i = 0; i < 12500; ++i )
    {
        std::string const id = Word( random, 8, 24 ) + "." + std::to_string( i );
        entries += "\t<key>" + id + "</key>\n\t<dict>\n" +
                   Entry( "\t\t", "path", "string", Word( random, 20, 120 ) ) +
                   Entry( "\t\t", "size", "integer", Number( random, 1000000000 ) ) +
                   Entry( "\t\t", "modified", "date", Date( random ) ) +
                   Entry( "\t\t", "ratio", "real", Number( random, 99 ) + ".125" ) +
                   Entry( "\t\t", "digest", "data", "q83vASNFZ4mrze8BI0VniavN7wE=" ) +
                   Entry( "\t\t", "owner", "string", Word( random, 3, 90 ) ) +
                   "\t\t<key>locked</key>\n\t\t<" + ( i % 3 != 0 ? "true" : "false" ) +
                   "/>\n\t\t<key>tags</key>\n\t\t<array>\n";
        for ( unsigned tag = 0; tag < 6; ++tag )
            entries += "\t\t\t<string>" + Word( random, 4, 40 ) + "</string>\n";
        entries += "\t\t</array>\n\t</dict>\n";
        if ( i % 1000 == 77 )
        {
            strings.push_back( { id, "path" } );
            integers.push_back( { id, "size" } );
        }
    }
    return { Whole( entries ), std::move( strings ), std::move( integers ) };
}

Contest Reading( unsigned count, Document ( *make )( Random& ), std::vector<Goal> goals )
{
    Random random( 20 );
    auto const documents = std::make_shared<Documents>();
    while ( documents->size() < count )
        documents->push_back( make( random ) );
    auto const contender = [&]<class Tree>( std::type_identity<Tree>, char const* name ) {
        return Contender{ name, [documents] { return ReadAll<Tree>( *documents ); }, {} };
    };
    return { { contender( std::type_identity<SimpleTree>(), "expat with a simple tree" ),
                 contender(
                     std::type_identity<CoreFoundationTree>(), "CFPropertyListCreateFromXMLData" ),
                 contender( std::type_identity<LibplistTree>(), "libplist" ),
                 contender( std::type_identity<Libxml2Tree>(), "libxml2" ),
                 contender( std::type_identity<PlistlibTree>(), "plistlib" ) },
        std::move( goals ) };
}

} // namespace

std::vector<ContestMaker> PropertyListContests()
{
    Goal const ahead{ "", 0.95, 1.15 };
    Goal const farAhead{ "libplist", 2.4, 0 };
    return { { "property list", "1 KB",
                 [] {
                     return Reading( 1000, VersionFile, { { "", 0.95, 1.1 } } );
                 },
                 11 },
        { "property list", "10 MB, one dictionary of 100,000 keys",
            [=] {
                return Reading( 1, Settings, { ahead, farAhead } );
            },
            5 },
        { "property list", "10 MB, 12,500 dictionaries of 8 keys",
            [=] { return Reading( 1, Inventory, { ahead } ); }, 5 } };
}
