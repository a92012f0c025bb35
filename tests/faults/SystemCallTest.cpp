// Every operation with each of its system calls failing, cut short or being the last one.
#include "files/FileLoop.h"
#include "files/FileOperations.h"
#include "files/mac/MacFileInfo.h"
#include "files/MakeFileLocation.h"
#include "files/ReadFile.h"
#include "files/TreeOperations.h"
#include "files/UniqueFileLocation.h"
#include "linux/AdministratorRights/AdministratorCommand.h"
#include "platform/AutoCFData.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"
#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "tests/faults/SystemCallFault.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFURLAccess.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

namespace fs = std::filesystem;

std::string gFolder;

FileLocation At( char const* name )
{
    return MakeFileLocation( ConstData( gFolder + "/" + name ) );
}

std::string Unique( FileLocation const& made )
{
    std::string const path = made.Platform().POSIXPath();
    return path.starts_with( gFolder ) || !fs::remove( path ) ? "" : "elsewhere";
}

std::string List()
{
    std::set<std::string> names;
    for ( FileLoop loop( At( "tree" ) ); loop.Next(); )
    {
        names.emplace( loop.Name().begin(), loop.Name().end() );
    }
    std::string list;
    std::for_each( names.begin(), names.end(), [&]( auto const& name ) { list += name + " "; } );
    return list;
}

std::string Walk()
{
    struct : TreeVisitor
    {
        std::set<std::string> names;

        void VisitItem( MacintoshPlatform::ItemPlace const& item, struct stat const& ) override
        {
            names.insert( item.path );
        }
    } visitor;

    WalkTree( At( "tree" ), visitor );
    return std::to_string( visitor.names.size() );
}

std::string ReadVersion()
{
    CFDataRef bytes = nullptr;
    SInt32 code = 0;
    Boolean const isRead = CFURLCreateDataAndPropertiesFromResource(
        kCFAllocatorDefault, At( "from" ).Platform().URL(), &bytes, nullptr, nullptr, &code );
    AutoCFData const data( bytes );
    return isRead ? std::to_string( CFDataGetLength( bytes ) ) : "code " + std::to_string( code );
}

std::string ReadBundle()
{
    CFBundleRef const bundle = CFBundleCreate( kCFAllocatorDefault, At( "tree" ).Platform().URL() );
    bool const isRead =
        bundle != nullptr && CFDictionaryGetCount( CFBundleGetInfoDictionary( bundle ) ) == 1;
    bundle != nullptr ? CFRelease( bundle ) : void();
    return isRead ? "" : "none";
}

std::string Inspect()
{
    FileLocation const link = At( "link" );
    bool isFolder = false;
    bool wasAlias = false;
    short result = 0;
    link.Platform().ResolveAliasFile( true, isFolder, wasAlias, result );
    MacintoshPlatform::MacFileInfo const info( At( "from" ).Platform() );
    bool const isAll = result == 0 && wasAlias && info.Exists() && link.Platform().IsLink() &&
                       At( "tree" ).Platform().IsDirectory();
    return isAll ? "" : "missing";
}

std::string RunCommand()
{
    bool const succeeded = RunWithAdministratorRights( "/bin/touch '" + gFolder + "/new'" );
    bool const leavesChild = waitpid( -1, nullptr, WNOHANG ) != -1;
    return std::string( succeeded ? "" : "failed" ) + ( leavesChild ? ", a child left" : "" );
}

std::string Snapshot()
{
    kinfo_proc* list = nullptr;
    std::size_t count = 0;
    int const error = GetBSDProcessList( &list, &count );
    std::string agents;
    for ( std::size_t i = 0; i < count; ++i )
    {
        std::string_view const name = list[i].kp_proc.p_comm;
        agents += name == "WUXAgent" ? std::to_string( list[i].kp_proc.p_pid ) : "";
    }
    bool const isConsistent = ( error == 0 ) == ( list != nullptr );
    std::free( list );
    return !isConsistent ? "inconsistent" : error != 0 ? "failed" : "agents " + agents;
}

struct Operation
{
    char const* failures; ///< a regular expression of what it may answer, besides kAnyFailure
    char const* name;
    std::function<std::string()> run;
};

// GoogleTest's hook: how a row is called in messages.
void PrintTo( Operation const& operation, std::ostream* stream )
{
    *stream << operation.name;
}

constexpr char const* kAnyFailure =
    "|DiskFullError|FilePermissionError|CreateUniqueFileLocationFailed";
constexpr char const* kMake = "(File|Directory)(CreateFailed|Exists)|DirectoryNotFoundError";
constexpr char const* kDelete = "(File|Directory)DeleteFailed|FileNotOpenError|DirectoryNotEmpty";
constexpr char const* kMoveAway = "File(Move|Copy|Delete)Failed|FileBusyError";
constexpr char const* kMoveTreeAway =
    "File(Move|Copy)Failed|(File|Directory)DeleteFailed|"
    "FileBusyError|FileNotOpenError|DirectoryNotEmpty|DirectoryExists";
constexpr char const* kInspect = "missing|FileNotFoundError|FileError|CFURLCreateFromFSRefFailed";
constexpr char const* kTemporary = "CannotCreateSpecialFolder|CFURLCreateFromFSRefFailed|elsewhere";

#define RUN( ... )                                                                                 \
#__VA_ARGS__, []() -> std::string { __VA_ARGS__; return ""; }

// clang-format off
std::vector<Operation> const kOperations = {
    { "FileNotOpenError|FileIOError", RUN( return ReadFile( At( "from" ), 100000 ) ) },
    { "code .*", RUN( return ReadVersion() ) },
    { "none", RUN( return ReadBundle() ) },
    { "FileLoopFailed|FSIteratorCreateError", RUN( return List() ) },
    { "FileNotOpenError", RUN( return Walk() ) },
    { kInspect, RUN( return Inspect() ) },
    { kMake, RUN( CreateFile( At( "a/b/new" ), { .permissions = 0666, .makesParents = true } ) ) },
    { kMake, RUN( ForceDirectoryExistence( At( "a/b/c" ) ) ) },
    { "CreateUniqueFileLocationFailed", RUN( return Unique( CreateUniqueFile( At( "." ), "unique-" ) ) ) },
    { "CreateUniqueFileLocationFailed", RUN( return Unique( CreateUniqueDirectory( At( "." ), "unique-" ) ) ) },
    { kTemporary, RUN( return Unique( CreateTemporaryFile( "unique-" ) ) ) },
    { "FileDeleteFailed", RUN( DeleteFile( At( "to" ) ) ) },
    { "DirectoryDeleteFailed", RUN( DeleteDirectory( At( "empty" ) ) ) },
    { "FileDeleteFailed", RUN( ForceNonexistence( At( "empty" ) ) ) },
    { kDelete, RUN( ForceDeleteRecursive( At( "tree" ) ) ) },
    { kDelete, RUN( ForceDeleteContents( At( "tree" ) ) ) },
    { "FileCopyFailed", RUN( CopyFile( At( "from" ), At( "new" ) ) ) },
    { "FileCopyFailed", RUN( CopyFile( At( "link" ), At( "new" ) ) ) },
    { "FileCopyFailed", RUN( ForceCopyFile( At( "from" ), At( "to" ) ) ) },
    { "FileMoveFailed", RUN( MoveFile( At( "from" ), At( "new" ) ) ) },
    { "FileMoveFailed", RUN( ForceMoveFile( At( "from" ), At( "to" ) ) ) },
    { "FileCopyFailed|FileNotOpenError", RUN( CopyTree( At( "tree" ), At( "new" ) ) ) },
    { kMoveAway, RUN( MoveFile( At( "from" ), At( "mounted/new" ) ) ) },
    { kMoveAway, RUN( ForceMoveFile( At( "from" ), At( "mounted/to" ) ) ) },
    { kMoveTreeAway, RUN( MoveFile( At( "tree" ), At( "mounted/new" ) ) ) },
    { "failed", RUN( return RunCommand() ) },
    { "0", RUN( return std::to_string( getPID() ) ) },
    { "failed|agents ", RUN( return Snapshot() ) },
};
// clang-format on

using State = std::map<std::string, std::string>;

/// The items in the folder with their content; random names without what is random.
State ReadState()
{
    State state;
    for ( fs::directory_entry const& entry : fs::recursive_directory_iterator( gFolder ) )
    {
        std::string const name = entry.path().string().substr( gFolder.size() + 1 );
        std::ostringstream content;
        if ( entry.is_symlink() )
        {
            content << "->" << fs::read_symlink( entry ).string();
        }
        else if ( entry.is_regular_file() )
        {
            content << ":" << std::ifstream( entry.path(), std::ios::binary ).rdbuf();
        }
        state[name.starts_with( "unique-" ) ? "unique" : name] = content.str();
    }
    return state;
}

State MakeItems()
{
    for ( std::string const& folder : { gFolder, gFolder + "/mounted" } )
    {
        for ( fs::directory_entry const& entry : fs::directory_iterator( folder ) )
        {
            entry.path().filename() != "mounted" && fs::remove_all( entry.path() );
        }
    }
    fs::create_directories( gFolder + "/tree/sub" );
    fs::create_directory( gFolder + "/empty" );
    State const files = { { "from", std::string( 70000, 'n' ) }, { "to", "old" },
        { "mounted/to", "old" }, { "tree/sub/a", "a" },
        { "tree/Info.plist", "<plist><dict><key>a</key><string>b</string></dict></plist>" } };
    for ( auto const& [name, content] : files )
    {
        std::ofstream( gFolder + "/" + name ) << content;
    }
    fs::create_hard_link( gFolder + "/tree/sub/a", gFolder + "/tree/hard" );
    fs::create_symlink( "from", gFolder + "/link" );
    fs::create_symlink( "sub", gFolder + "/tree/link" );
    return ReadState();
}

/// Whether each item is what it was before or is to be in the end, and those that are to vanish do
/// so only when everything new is there. Temporary items are wrong unless they `mayStay`.
std::string Compare( State const& before, State const& now, State const& after, bool mayStay )
{
    auto const has = []( State const& state, State::value_type const& item )
    {
        auto const found = state.find( item.first );
        return found != state.end() && found->second == item.second;
    };
    std::string wrong;
    for ( State::value_type const& item : now )
    {
        bool const isTemporary = item.first.find( ".unfinished-" ) != item.first.npos;
        bool const isKnown = has( before, item ) || has( after, item );
        wrong += isKnown || ( mayStay && isTemporary ) ? "" : " " + item.first;
    }
    bool isVanishing = false;
    for ( auto const& [name, content] : before )
    {
        bool const isMissing = now.count( name ) == 0;
        isVanishing = isVanishing || isMissing;
        wrong += isMissing && after.count( name ) != 0 ? " no " + name : "";
    }
    bool const isMade = std::all_of( after.begin(), after.end(),
        [&]( auto const& item ) { return has( before, item ) || has( now, item ); } );
    return wrong + ( isVanishing && !isMade ? " lost" : "" );
}

std::vector<SystemCallFault> const kFaults = { { SystemCallFault::Error, EIO },
    { SystemCallFault::Error, ENOSPC }, { SystemCallFault::Error, EINTR },
    { SystemCallFault::Error, EACCES }, { SystemCallFault::Error, EMFILE },
    { SystemCallFault::Errors, EIO }, { SystemCallFault::Errors, ENOSPC },
    { SystemCallFault::Half }, { SystemCallFault::Killed } };

#ifndef __has_feature
#define __has_feature( name ) 0
#endif
#if defined( __SANITIZE_ADDRESS__ ) || __has_feature( address_sanitizer )
constexpr bool kIsSlow = true;
#else
constexpr bool kIsSlow = false;
#endif

/// Unless EVERY_FAULT is in the environment, a call has EIO, one of the four other errors in turn,
/// and ENOSPC that goes on; with a sanitizer, which is slow, one fault of all in turn.
bool IsDue( std::size_t kind, SystemCallFault const& fault, long call )
{
    static bool const isEvery = getenv( "EVERY_FAULT" ) != nullptr;
    if ( fault.kind == SystemCallFault::Half )
    {
        return call == SYS_read || call == SYS_pread64 || call == SYS_write || call == SYS_pwrite64;
    }
    bool const isInTurn = kind == 0 || kind == 1 + fault.call % 4 || kind == 6 ||
                          fault.kind == SystemCallFault::Killed;
    return ( isEvery || ( kIsSlow ? kind == fault.call % 7 : isInTurn ) ) &&
           ( fault.kind == SystemCallFault::Error || fault.process == 0 );
}

class Sweep
{
  public:
    Sweep( Operation const& operation, bool isOldSystem )
        : mOperation( operation ),
          mAllowed( std::string( operation.failures ) + kAnyFailure ),
          mBefore( MakeItems() ),
          mIsOldSystem( isOldSystem ),
          mSound( Run( {} ) ),
          mAfter( ReadState() )
    {
    }

    /// With each fault at each call; answers what was wrong.
    std::string Perform()
    {
        if ( std::regex_match( mSound.result, mAllowed ) || mSound.calls[0].empty() )
        {
            return mSound.result + " without a fault\n";
        }
        std::string wrong;
        for ( std::size_t process = 0; process < mSound.calls.size(); ++process )
        {
            for ( std::size_t call = 0; call < mSound.calls[process].size(); ++call )
            {
                for ( std::size_t kind = 0; kind < kFaults.size(); ++kind )
                {
                    SystemCallFault const& row = kFaults[kind];
                    SystemCallFault const fault = { row.kind, row.error, process, call };
                    // One that is killed while it has a child leaves that running.
                    bool const runsOn = mSound.calls.size() > 1 && row.kind == row.Killed;
                    bool const isDue = IsDue( kind, fault, mSound.calls[process][call] );
                    wrong += isDue && !runsOn ? Judge( fault ) : "";
                }
            }
        }
        std::printf( "%s%s: %zu runs\n", mOperation.name, mIsOldSystem ? " (old)" : "", mRuns );
        std::fflush( stdout );
        return wrong;
    }

    bool DependsOnSystem() const
    {
        std::vector<long> const& calls = mSound.calls[0];
        return std::count( calls.begin(), calls.end(), SYS_copy_file_range ) +
                   std::count( calls.begin(), calls.end(), SYS_renameat2 ) !=
               0;
    }

  private:
    TracedRun Run( SystemCallFault fault )
    {
        fault.isOldSystem = mIsOldSystem;
        return RunWithFault( mOperation.run, fault );
    }

    std::string Judge( SystemCallFault const& fault )
    {
        ++mRuns;
        std::string const result = Run( fault ).result;
        State const now = ReadState();
        bool const isKilled = fault.kind == SystemCallFault::Killed;
        bool const isSound = result == mSound.result;
        std::string const wrong = Compare( isSound ? mAfter : mBefore, now, mAfter,
            isKilled || fault.kind == SystemCallFault::Errors );
        bool const isAllowed = isKilled ? result == "killed by signal 9"
                                        : isSound || std::regex_match( result, mAllowed );
        if ( now != mBefore )
        {
            MakeItems();
        }
        std::ostringstream text;
        text << ( mIsOldSystem ? "old, " : "" ) << "process " << fault.process << ", step "
             << fault.call << ", call " << mSound.calls[fault.process][fault.call] << ", kind "
             << fault.kind << ", error " << fault.error << ": " << result << ";" << wrong << "\n";
        return wrong.empty() && isAllowed ? "" : text.str();
    }

    Operation const& mOperation;
    std::regex const mAllowed;
    State const mBefore;
    bool const mIsOldSystem;
    TracedRun const mSound;
    State const mAfter;
    std::size_t mRuns = 0;
};

/// In a child with a file system of its own in the folder, another one in `mounted` and a process
/// table where the agent has the identifier 3 and others have similar names.
std::string InScene( std::function<std::string()> const& act )
{
    TemporaryFolder const folder;
    gFolder = folder.Path();
    std::string const mounted = folder.Path( "mounted" );
    auto const prepareAndAct = [&]() -> std::string
    {
        if ( mount( "proc", "/proc", "proc", 0, nullptr ) != 0 )
        {
            return "SKIPPED: this user may not mount";
        }
        for ( char const* name : { "WUXAgentX", "WUXAgent", "two\nWUXAgent", "tests" } )
        {
            prctl( PR_SET_NAME, name );
            if ( name != std::string_view( "tests" ) && fork() == 0 )
            {
                pause();
            }
        }
        setenv( "TMPDIR", gFolder.c_str(), 1 );
        TracedRun const probe = RunWithFault( [] { return fs::current_path().string(); }, {} );
        return probe.calls.empty() ? "SKIPPED: no process may trace its child" : act();
    };
    return InChild(
        [&]
        {
            bool const isReady = MountPrivately( gFolder, "4m" ) &&
                                 fs::create_directory( mounted ) &&
                                 mount( "tmpfs", mounted.c_str(), "tmpfs", 0, "size=1m" ) == 0 &&
                                 unshare( CLONE_NEWPID ) == 0;
            return isReady ? InChild( prepareAndAct ) : "SKIPPED: this user may not mount";
        } );
}

void ExpectNothing( std::string const& wrong )
{
    if ( wrong.starts_with( "SKIPPED" ) )
    {
        GTEST_SKIP() << wrong;
    }
    EXPECT_EQ( "", wrong );
}

} // namespace

class SystemCalls : public testing::TestWithParam<Operation>
{
};

TEST_P( SystemCalls, FailAndItemsStayWholeAndTheResultIsRightOrSaysWhy )
{
    ExpectNothing( InScene(
        []
        {
            std::string const wrong = Sweep( GetParam(), false ).Perform();
            Sweep old( GetParam(), true );
            return wrong + ( old.DependsOnSystem() ? old.Perform() : "" );
        } ) );
}

INSTANTIATE_TEST_SUITE_P( Operation, SystemCalls, testing::ValuesIn( kOperations ) );

class FullDisk : public SystemCalls
{
};

TEST_P( FullDisk, LeavesTheOldItemOrTheNewOneWhateverRoomThereIs )
{
    auto const fill = []() -> std::string
    {
        State const before = MakeItems();
        GetParam().run();
        State const after = ReadState();
        std::string wrong;
        std::set<std::string> results;
        for ( std::size_t room = 0; room < 100000; room += 4096 )
        {
            MakeItems();
            std::ofstream( gFolder + "/mounted/fill" ) << std::string( 0xFF000 - room, 'f' );
            std::string const result = RunWithFault( GetParam().run, {} ).result;
            fs::remove( gFolder + "/mounted/fill" );
            results.insert( result );
            bool const isRight = ReadState() == ( result.empty() ? after : before );
            wrong += isRight ? "" : std::to_string( room ) + ": " + result + "\n";
        }
        return results == std::set<std::string>{ "", "DiskFullError" } ? wrong : "other results";
    };
    ExpectNothing( InScene( fill ) );
}

INSTANTIATE_TEST_SUITE_P( Replacing, FullDisk,
    testing::Values( Operation{ "", RUN( ForceCopyFile( At( "from" ), At( "mounted/to" ) ) ) },
        Operation{ "", RUN( ForceMoveFile( At( "from" ), At( "mounted/to" ) ) ) } ) );
