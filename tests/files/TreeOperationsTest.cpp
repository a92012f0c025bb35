#include "files/TreeOperations.h"

#include "files/FileErrors.h"
#include "files/MakeFileLocation.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace fs = std::filesystem;
using MacintoshPlatform::ItemPlace;
using Path = std::string;

static std::function<void()> gAtFolder = [] {};

extern "C"
{
    decltype( unlinkat ) __real_unlinkat;

    // The program is linked with --wrap=unlinkat. A folder called "full" is watched.
    int __wrap_unlinkat( int folder, char const* name, int flags )
    {
        bool const isWatched = flags != 0 && name == std::string_view( "full" );
        if ( isWatched )
            gAtFolder();
        int const result = __real_unlinkat( folder, name, flags );
        int const error = errno;
        if ( isWatched )
            gAtFolder();
        errno = error;
        return result;
    }
}

namespace
{

/// What `operation` says about the items at the paths: an error's message, or "done".
template<class Operation, class... Paths>
std::string Result( Operation const& operation, Paths const&... paths )
{
    try
    {
        operation( MakeFileLocation( paths.c_str() )... );
        return "done";
    }
    catch ( FileIOError const& error )
    {
        return error.what();
    }
}

template<class Error>
std::string About( std::int32_t code, Path const& first, Path const& second = {} )
{
    return Error( ConstData( first ), ConstData( second ), code ).MakeErrorMessage();
}

/// Runs `check` with a new folder in a child, who is an ordinary user or, `withDisk`, has a small
/// disk of its own in memory there.
void Check( bool withDisk, void ( *check )( Path const& folder ) )
{
    TemporaryFolder const disk; // the child could not delete what it mounts on
    auto const run = [&]() -> std::string
    {
        if ( withDisk )
        {
            if ( !MountPrivately( disk.Path(), "64m" ) )
                return "may not mount";
            check( disk.Path() );
        }
        else
        {
            BecomeOrdinaryUser();
            TemporaryFolder const folder;
            check( folder.Path() );
        }
        return testing::Test::HasFailure() ? "failed" : "passed";
    };
    std::string const result = InChild( run );
    if ( result == "may not mount" )
        GTEST_SKIP() << "SKIPPED: this user " << result;
    EXPECT_EQ( result, "passed" );
}

/// Makes folders in one another below `root`, each called "d", and a file in the last one.
void MakeDeep( Path const& root, unsigned depth )
{
    fs::create_directory( root );
    int folder = open( root.c_str(), O_RDONLY );
    for ( ; depth > 0 && mkdirat( folder, "d", 0755 ) == 0; --depth )
        close( std::exchange( folder, openat( folder, "d", O_RDONLY ) ) );
    close( openat( folder, "end", O_CREAT, 0644 ) );
    close( folder );
}

/// What a visitor meets, who runs commands at each item, and the result.
std::string Walk( Path const& root, std::string const& atItem = "true" )
{
    struct Recorder : TreeVisitor
    {
        bool FolderBegins( ItemPlace const& folder, struct stat const& ) override
        {
            text += Path( folder.name ) + '{';
            if ( text.ends_with( "swapped{" ) )
                Shell( root, "mv swapped ../gone; ln -s ../deep swapped" );
            return !text.ends_with( "passed{" );
        }

        void VisitItem( ItemPlace const& item, struct stat const& ) override
        {
            text += item.name[0];
            Shell( root, atItem );
        }

        void FolderEnds( ItemPlace const&, struct stat const& ) override { text += '}'; }

        Path root, atItem, text;
    } recorder;

    recorder.root = root;
    recorder.atItem = atItem;
    auto const walk = [&]( FileLocation const& location ) { WalkTree( location, recorder ); };
    std::string const result = Result( walk, root );
    return recorder.text.erase( 0, std::min( root.size(), recorder.text.size() ) ) + result;
}

TEST( CopyTree, KeepsAllOfATreeOrNamesTheItemThatFailsAndLeavesNothing )
{
    auto const check = []( Path const& folder )
    {
        Path const tree = folder + "/tree";
        Path const copy = folder + "/copy";
        Shell( folder,
            "mkdir tree; cd tree; mkdir -p full/empty '\xff\xfe' p/a p/c q/b q/d\n"
            "echo 1 > full/file; echo 2 > '\xff\xfe/\x80'; echo 3 > p/a/1; chmod 4751 p/a/1\n"
            "echo 4 > p/c/2; echo 5 > p/a/3; ln p/a/1 q/b/1; ln p/c/2 q/b/2; ln p/a/3 q/d/3\n"
            "ln p/a/3 q/d/4; ln p/a/3 q/d/5\n"
            "ln -s nowhere dangling; ln -P dangling 'full/hard link'\n"
            "ln -s /etc '\xff\xfe/outside'\n"
            "touch -hd @987654321.123456789 full/file dangling '\xff\xfe' full .\n"
            "chmod 555 full '\xff\xfe' p q/b" ); // for its owner, too
        EXPECT_EQ( Result( CopyTree, tree, copy ), "done" );
        // All that an archive keeps: names, content, permissions, times, links, hard links.
        Path const archive = "tar -c --sort=name --format=posix "
                             "--pax-option=exthdr.name=%f,delete=atime,delete=ctime .";
        EXPECT_TRUE( Shell( copy, archive ) == Shell( tree, archive ) );
        EXPECT_EQ( Result( CopyTree, tree + "/dangling", folder + "/link" ), "done" );
        EXPECT_EQ( Result( CopyTree, tree, folder + "/link" ),
            About<FileExists>( -48, folder + "/link", tree ) );
        Shell( folder, "chmod -R u+w copy; rm -r copy; mkfifo tree/pipe" );
        EXPECT_EQ( Result( CopyTree, tree, copy ),
            About<FileItemError>( -36, tree + "/pipe", copy + "/pipe" ) );
        Shell( tree, "rm pipe; chmod 0 full/empty" );
        EXPECT_EQ( Result( CopyTree, tree, copy ),
            About<FilePermissionError>( -5000, tree + "/full/empty", copy + "/full/empty" ) );
        EXPECT_EQ( Shell( folder, "ls -A; readlink link" ), "link\ntree\nnowhere\n" );
    };
    Check( false, check );
}

TEST( CopyTree, RefusesToCopyATreeIntoItself )
{
    TemporaryFolder const folder;
    Shell( folder.Path(), "mkdir -p tree/full/empty; ln -s tree/full/empty inside" );
    std::pair<char const*, char const*> const rows[]{ { "tree", "tree/copy" },
        { "tree", "inside/../copy" }, { "tree/full/..", "tree/copy" }, { ".", "copy" } };
    for ( auto const& [from, to] : rows )
        EXPECT_EQ( Result( CopyTree, folder.Path( from ), folder.Path( to ) ),
            About<FileCopyFailed>( -36, folder.Path( from ), folder.Path( to ) ) );
    EXPECT_EQ(
        Shell( folder.Path(), "ls -A . tree/full" ), ".:\ninside\ntree\n\ntree/full:\nempty\n" );
    EXPECT_EQ( Result( CopyTree, folder.Path( "tree" ), folder.Path( "tree2" ) ), "done" );
}

TEST( TreeOperations, MeetMountedFileSystems )
{
    auto const check = []( Path const& folder )
    {
        Path const tree = folder + "/tree";
        Shell( folder, "mkdir -p tree/disk other" );
        mount( "tmpfs", ( tree + "/disk" ).c_str(), "tmpfs", 0, nullptr );
        Shell( tree, "touch disk/end" );
        EXPECT_EQ(
            Result( ForceDeleteRecursive, tree ), About<FileBusyError>( -47, tree + "/disk" ) );
        EXPECT_EQ( Result( CopyTree, tree, folder + "/copy" ), "done" );
        EXPECT_TRUE( fs::exists( folder + "/copy/disk/end" ) );
        EXPECT_EQ( Result( ForceDeleteContents, tree + "/disk" ), "done" );
        EXPECT_TRUE( fs::is_empty( tree + "/disk" ) );

        // The copy lies in what is copied, but no way up from it leads there.
        mount( ( folder + "/other" ).c_str(), ( tree + "/disk" ).c_str(), "", MS_BIND, "" );
        EXPECT_THAT( Result( CopyTree, tree, folder + "/other/copy" ),
            testing::MatchesRegex( ".*FileCopyFailed.*tree/disk/\\..*other/copy/disk/.*" ) );
        EXPECT_TRUE( fs::is_empty( folder + "/other" ) );
    };
    Check( true, check );
}

TEST( TreeOperations, ManageAnySizeAndDepthWithFewDescriptorsAndLittleStack )
{
    auto const check = []( Path const& folder )
    {
        MakeDeep( folder + "/tree", 10'000 );
        Shell( folder, "mkdir large; cd large; seq 10000 | xargs touch" );
        rlimit const files{ 64, 64 };
        rlimit const stack{ 256 * 1024, 256 * 1024 };
        setrlimit( RLIMIT_NOFILE, &files );
        setrlimit( RLIMIT_STACK, &stack );
        EXPECT_EQ( Result( CopyTree, folder + "/tree", folder + "/copy" ), "done" );
        EXPECT_EQ( Result( ForceDeleteRecursive, folder + "/tree" ), "done" );
        EXPECT_EQ( Walk( folder + "/copy" ).find( "{e}}" ), 20'000U );
        EXPECT_EQ( Result( ForceDeleteContents, folder ), "done" );
        EXPECT_TRUE( fs::is_empty( folder ) );
    };
    Check( true, check ); // the cost of so many syncs is not what this is about
}

TEST( WalkTree, TellsWhatIsThereAndNoticesWhatIsTakenAway )
{
    TemporaryFolder const folder;
    Path const deep = folder.Path( "deep" );
    MakeDeep( deep, 40 );
    Shell( folder.Path(),
        "mkdir -p 'tree/passed/not seen' vanishing; touch vanishing/11 vanishing/12" );
    EXPECT_EQ( Walk( folder.Path( "tree" ) ), "{passed{}done" );
    EXPECT_EQ( Walk( folder.Path( "vanishing" ), "rm -f *" ), "{1}done" );
    EXPECT_EQ( Walk( deep + "/none" ), About<FileNotFoundError>( -43, deep + "/none" ) );
    fs::create_directories( folder.Path( "swap/swapped" ) );
    EXPECT_THAT( Walk( folder.Path( "swap" ) ), testing::StartsWith( "{swapped{}s" ) );
    EXPECT_THAT( Walk( deep, "mv d/d/d moved" ),
        testing::EndsWith( "}" + About<FileNotFoundError>( -43, deep + "/d/d/d" ) ) );
}

TEST( ForceDelete, LeavesWhatItShouldNotDelete )
{
    TemporaryFolder const folder;
    Path const victim = folder.Path( "victim" );
    Path const link = folder.Path( "link" );
    Shell( folder.Path(), "mkdir victim; touch victim/end; ln -s victim link" );
    std::string const notFound = About<FileNotFoundError>( -43, victim + "/none" );
    std::tuple<void ( * )( FileLocation const& ), Path, std::string> const rows[]{
        { ForceDeleteContents, link, About<DirectoryNotFoundError>( -120, link ) },
        { ForceDeleteContents, victim + "/none", notFound },
        { ForceDeleteRecursive, "/", About<RootHasNoParent>( 0, "/" ) },
        { ForceDeleteRecursive, victim + "/..",
            About<DirectoryDeleteFailed>( -36, victim + "/.." ) },
        { ForceDeleteRecursive, victim + "/none/none", "done" },
        { ForceDeleteRecursive, victim + "/end/none", "done" },
        { ForceDeleteRecursive, link, "done" },
    };
    for ( auto const& [operation, path, result] : rows )
        EXPECT_EQ( Result( operation, path ), result );

    // The root by another path; a root of its own, should the refusal fail.
    std::string const refused = About<RootHasNoParent>( 0, "/victim/.." );
    auto const deleteRoot = [&]
    {
        bool const isRoot = chroot( folder.Path().c_str() ) == 0;
        return isRoot ? Result( ForceDeleteContents, Path( "/victim/.." ) ) : refused;
    };
    EXPECT_EQ( InChild( deleteRoot ), refused );
    EXPECT_EQ( Shell( folder.Path(), "ls *" ), "end\n" );
}

TEST( ForceDelete, NeverFollowsALinkThatReplacesAFolderMeanwhile )
{
    for ( unsigned const call : { 1U, 2U } ) // before it is asked to go, and before it is entered
    {
        TemporaryFolder const folder;
        Shell( folder.Path(), "mkdir -p victim/folder tree/full/inner; touch victim/file" );
        gAtFolder = [&, calls = 0u]() mutable
        {
            if ( ++calls == call )
                Shell( folder.Path(), "mv tree/full kept; ln -s \"$PWD/victim\" tree/full" );
        };
        EXPECT_EQ( Result( ForceDeleteRecursive, folder.Path( "tree" ) ), "done" );
        EXPECT_EQ( Shell( folder.Path(), "ls *" ), "kept:\ninner\n\nvictim:\nfile\nfolder\n" );
        gAtFolder = [] {};
    }
}

} // namespace
