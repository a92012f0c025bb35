#include "files/FileOperations.h"

#include "files/FileErrors.h"
#include "files/MakeFileLocation.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stdio.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

bool gRenamesExclusively = true;
mode_t gModesWhileWritten = 0;
std::function<void()> gAtSync = [] {};

} // namespace

extern "C"
{
    decltype( renameatx_np ) __real_renameatx_np;

    int __wrap_renameatx_np( int f, char const* from, int t, char const* to, unsigned flags )
    {
        errno = ENOTSUP;
        return gRenamesExclusively ? __real_renameatx_np( f, from, t, to, flags ) : -1;
    }

    ssize_t __wrap_copy_file_range( int, off_t*, int to, off_t*, std::size_t, unsigned )
    {
        struct stat status = {};
        gModesWhileWritten |= fstat( to, &status ) == 0 ? status.st_mode & 07777 : 07777;
        errno = EXDEV;
        return -1;
    }

    decltype( fsync ) __real_fsync;

    int __wrap_fsync( int file )
    {
        gAtSync();
        return __real_fsync( file );
    }
}

namespace
{

namespace fs = std::filesystem;
using namespace std::string_literals;

using Operation = std::function<void( FileLocation const&, FileLocation const& )>;

std::map<std::string, Operation> const gOperations = {
    { "CreateFile", []( auto& at, auto& ) { CreateFile( at ); } },
    { "CreateDirectory", []( auto& at, auto& ) { CreateDirectory( at ); } },
    { "ForceDirectoryExistence", []( auto& at, auto& ) { ForceDirectoryExistence( at ); } },
    { "DeleteFile", []( auto& at, auto& ) { DeleteFile( at ); } },
    { "DeleteDirectory", []( auto& at, auto& ) { DeleteDirectory( at ); } },
    { "ForceNonexistence", []( auto& at, auto& ) { ForceNonexistence( at ); } },
    { "CopyFile", CopyFile },
    { "ForceCopyFile", ForceCopyFile },
    { "MoveFile", MoveFile },
    { "ForceMoveFile", ForceMoveFile },
};

std::string Replaced( std::string const& text, char const* form, std::string const& by )
{
    return std::regex_replace( text, std::regex( form ), by );
}

/// A text that starts with "/" is a path; others are names in `folder`.
FileLocation Locate( std::string const& folder, std::string const& name )
{
    std::string const path = name[0] == '/' ? name : folder + "/" + name;
    return name == "<empty>" ? FileLocation() : MakeFileLocation( path.c_str() );
}

/// The class of the error, its names and its code; empty for none.
std::string Perform( std::string const& operation, std::string const& folder,
    std::string const& from, std::string const& to )
{
    try
    {
        gOperations.at( operation )( Locate( folder, from ), Locate( folder, to ) );
        return "";
    }
    catch ( FileIOError const& error )
    {
        std::string const text =
            Replaced( error.what(), ": .*", " " + std::to_string( error.GetCode() ) );
        return Replaced( text, "File error \"\\d*|/[^\"]*/w/|\"| on| and", "" );
    }
}

using Items = std::map<std::string, std::string>;
using Bytes = std::istreambuf_iterator<char>;

Items ReadItems( std::string const& folder )
{
    Items items;
    for ( fs::directory_entry const& entry : fs::recursive_directory_iterator( folder ) )
    {
        std::ifstream content( entry.is_regular_file() ? entry.path() : "/dev/null" );
        items[entry.path().string().substr( folder.size() + 1 )] =
            entry.is_symlink()        ? "->" + fs::read_symlink( entry ).string()
            : entry.is_directory()    ? "/"
            : entry.is_regular_file() ? ":" + std::string( Bytes( content ), Bytes() )
                                      : "|";
    }
    return items;
}

/// What became of the items: " +new" for those that are new or have another content, " -gone".
std::string Changes( Items const& before, Items const& after )
{
    std::string changes;
    for ( auto const& [name, content] : after )
        if ( before.count( name ) == 0 || before.at( name ) != content )
            changes += " +" + name + content;
    for ( auto const& [name, content] : before )
        changes += after.count( name ) == 0 ? " -" + name : "";
    return changes;
}

/// In which folder: one that is "plain", "locked" (not to be written to), "unreadable", "readonly"
/// or "full"; with "dir" in another file system ("mounted"), and locked as well ("walled"); in a
/// system "old" that cannot rename exclusively; or another process writes "new" or "file" at the
/// first sync. What running an operation there in a child gave: the error and the changes.
std::string Outcome( TemporaryFolder const& folder, std::string const& place,
    std::string const& operation, std::string const& from, std::string const& to )
{
    if ( place == "walled" && geteuid() != 0 ) // who may mount may write everywhere then
        return "SKIPPED";
    std::string const work = folder.Path( "w" );
    auto const isIn = [&]( std::string_view places )
    { return places.find( place ) != places.npos; };
    Shell( folder.Path(), "chmod 755 .; mkdir w" );
    bool const mayMount = !isIn( "readonly full" ) || MountPrivately( work, "64k" );
    Shell( work,
        "mkdir dir full; printf /file > file; printf /other > other; printf /full/x > full/x;"
        "ln file hard; mkfifo fifo; ln -s file link; ln -s full dirlink; ln -s nowhere dangling" );
    if ( !mayMount || ( isIn( "mounted walled file" ) && !MountPrivately( work + "/dir", "64k" ) ) )
        return "SKIPPED";
    if ( place == "full" )
        std::ofstream( work + "/fill" ) << std::string( 100000, 'f' );
    auto const before = ReadItems( work );
    if ( isIn( "locked unreadable walled" ) && geteuid() == 0 &&
         chown( work.c_str(), 65534, 65534 ) == 0 )
        BecomeOrdinaryUser();
    if ( place == "readonly" )
        mount( nullptr, work.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr );
    chmod( work.c_str(), isIn( "unreadable" ) ? 0300 : isIn( "locked walled" ) ? 0500 : 0700 );
    gRenamesExclusively = place != "old";
    if ( isIn( "file new" ) )
        gAtSync = [&] { std::ofstream( work + "/" + place ) << "foreign"; };
    std::string const error = Perform( operation, work, from, to );
    chmod( work.c_str(), 0755 );
    return ( error.empty() ? "" : " " + error ) + Changes( before, ReadItems( work ) );
}

/// In each place the operations, their locations, and what comes out.
std::pair<char const*, char const*> const gCases[] = {
    { "plain", R"(CreateFile new = +new:; CreateFile <255> = +<255>:;
CreateFile <255>n = FileCreateFailed <255>n -37;
CreateFile missing/new = DirectoryNotFoundError missing/new -120;
CreateFile file/new = DirectoryNotFoundError file/new -120;
CreateFile dangling = FileExists dangling -48; CreateFile / = RootHasNoParent /;
CreateFile <empty> = EmptyFileLocationError; CreateDirectory new = +new/;
CreateDirectory dir = DirectoryExists dir -48; ForceDirectoryExistence a/b = +a/ +a/b/;
ForceDirectoryExistence dirlink =; ForceDirectoryExistence / =;
ForceDirectoryExistence link = FileExists link -48;
ForceDirectoryExistence dangling/x = FileExists dangling dangling/x -48;
DeleteFile dirlink = -dirlink; DeleteFile fifo = -fifo; DeleteFile dir = FileItemError dir -36;
DeleteFile missing = FileNotFoundError missing -43; DeleteDirectory dir = -dir;
DeleteDirectory full = DirectoryNotEmpty full -47;
DeleteDirectory dirlink = DirectoryNotFoundError dirlink -120;
ForceNonexistence dirlink = -dirlink; ForceNonexistence dir = -dir;
ForceNonexistence full = DirectoryNotEmpty full -47; ForceNonexistence missing/x =;
ForceNonexistence file/x =; CopyFile file > <255> = +<255>:/file;
CopyFile dangling > new = +new->nowhere;
CopyFile file > dangling = FileExists dangling file -48;
CopyFile dir > new = FileItemError dir new -36;
CopyFile fifo > new = FileItemError fifo new -36;
CopyFile missing > new = FileNotFoundError missing new -43;
CopyFile file > missing/x = DirectoryNotFoundError missing/x file -120;
ForceCopyFile file > link = +link:/file;
ForceCopyFile file > dir = DirectoryExists dir file -48; ForceCopyFile file > hard =;
MoveFile full > new = +new/ +new/x:/full/x -full -full/x;
MoveFile file > link = FileExists link file -48;
MoveFile full > dir = DirectoryExists dir full -48;
MoveFile full > full/sub = FileMoveFailed full full/sub -36;
ForceMoveFile file > fifo = +fifo:/file -file; ForceMoveFile file > hard =;
ForceMoveFile full > dir/../full =; ForceMoveFile file > dir = DirectoryExists dir file -48;
ForceMoveFile dir > new = +new/ -dir; ForceMoveFile dir > other = FileExists other dir -48)" },
    { "locked", R"(ForceDirectoryExistence a/b = FilePermissionError a a/b -5000;
ForceNonexistence file = FilePermissionError file -5000;
ForceCopyFile file > other = FilePermissionError other file -5000;
ForceMoveFile file > other = FilePermissionError file other -5000)" },
    { "unreadable", R"(ForceCopyFile file > other = +other:/file)" },
    { "readonly", R"(CreateFile new = FileCreateFailed new -46; ForceDirectoryExistence full =;
DeleteFile file = FileDeleteFailed file -46;
ForceCopyFile file > other = FileCopyFailed other file -46)" },
    { "full", R"(ForceCopyFile file > other = DiskFullError other file -34)" },
    { "mounted",
        R"(DeleteDirectory dir = FileBusyError dir -47; MoveFile link > dir/new = +dir/new->file -link;
MoveFile full > dir/new = +dir/new/ +dir/new/x:/full/x -full -full/x;
MoveFile fifo > dir/new = FileItemError fifo dir/new -36)" },
    { "walled",
        R"(MoveFile file > dir/new = FilePermissionError file dir/new -5000 +dir/new:/file)" },
    { "old",
        R"(CopyFile file > new = +new:/file; MoveFile full > new = +new/ +new/x:/full/x -full -full/x;
MoveFile full > other = FileExists other full -48; MoveFile fifo > new = +new| -fifo)" },
    { "new", R"(CopyFile file > new = FileExists new file -48 +new:foreign)" },
    { "file",
        R"(MoveFile file > dir/new = FileBusyError file dir/new -47 +dir/new:/file +file:foreign +hard:foreign)" },
};

} // namespace

TEST( FileOperation, ChangesWhatItSaysOrNothingAndNamesTheFault )
{
    unsigned skipped = 0;
    std::regex const form( "(\\S+) ([^ ;]+)(?: > ([^ ;]+))? =([^;]*)" );
    for ( auto const& [place, cases] : gCases )
    {
        std::string const text = Replaced( cases, "<255>", std::string( 255, 'n' ) );
        for ( std::sregex_iterator row( text.begin(), text.end(), form ), end; row != end; ++row )
        {
            TemporaryFolder const folder; // a child could not delete what it mounts on
            std::string const outcome = InChild( [&, place = place]
                { return Outcome( folder, place, ( *row )[1], ( *row )[2], ( *row )[3] ); } );
            skipped += outcome == "SKIPPED";
            EXPECT_TRUE( outcome == ( *row )[4] || outcome == "SKIPPED" )
                << place << ": " << row->str() << "\n"
                << outcome;
        }
    }
    if ( skipped > 0 )
        GTEST_SKIP() << "SKIPPED: " << skipped << " cases, for this user may not mount";
}

TEST( FileOperation, KeepsModeAndTimesAndLetsNobodyReadMoreThanBefore )
{
    TemporaryFolder const folder;
    timespec const times[] = { { 1, 2 }, { -3, 999999999 } };
    bool const isRoot = geteuid() == 0;
    Shell( folder.Path(),
        "echo text > file; "s + ( isRoot ? "chown 65534:65534 file; " : "" ) + "chmod 6751 file" );
    ASSERT_EQ( 0, utimensat( AT_FDCWD, folder.Path( "file" ).c_str(), times, 0 ) );
    std::string const tell = "stat -c '%A %u %.9X %.9Y' file";
    std::string const before = Shell( folder.Path(), tell );
    ASSERT_EQ( "", Perform( "ForceCopyFile", folder.Path(), "file", "file2" ) );
    EXPECT_EQ( before, Shell( folder.Path(), tell + "2" ) );
    EXPECT_EQ( 0600u, gModesWhileWritten );
    if ( !isRoot )
        GTEST_SKIP() << "SKIPPED: only root has files of others";
    for ( auto const& [owners, mode] : { std::pair( "0:0"s, "744\n" ), { "0:65534", "774\n" } } )
    {
        Shell(
            folder.Path(), "rm -f own; chown " + owners + " file; chmod 6774 file; chmod 777 ." );
        auto const copy = [&]
        {
            BecomeOrdinaryUser();
            return Perform( "CopyFile", folder.Path(), "file", "own" );
        };
        EXPECT_EQ( "", InChild( copy ) );
        EXPECT_EQ( mode, Shell( folder.Path(), "stat -c %a own" ) ) << owners;
    }
}

TEST( FileOperation, GivesThePermissionsAskedForLessTheUmask )
{
    TemporaryFolder const folder;
    mode_t const old = umask( 0027 );
    CreateFile( Locate( folder.Path(), "a/b" ), { .permissions = 0666, .makesParents = true } );
    CreateDirectory( Locate( folder.Path(), "dir" ), { .permissions = 0705 } );
    umask( old );
    EXPECT_EQ( "640\n700\n750\n", Shell( folder.Path(), "stat -c %a a/b dir a" ) );
}
