#include "platform/OSError.h"
#include "platform/FileError.h"

#include <gmock/gmock.h>

#include <type_traits>

namespace
{

template<typename Base, typename Derived>
constexpr bool AddsNothing = std::is_base_of_v<Base, Derived> &&
                             sizeof( Derived ) == sizeof( Base );

static_assert( sizeof( OSError ) == 4 && !std::is_polymorphic_v<OSError> );
static_assert( AddsNothing<OSError, MemoryError> && AddsNothing<MemoryError, MemoryFullError> );
static_assert( AddsNothing<OSError, FileError> && AddsNothing<FileError, NotAFileError> );
static_assert(
    AddsNothing<FileError, FileAccessError> && AddsNothing<FileAccessError, VolumeLockError> );
static_assert( AddsNothing<VolumeLockError, HardwareVolumeLockError> &&
               AddsNothing<VolumeLockError, SoftwareVolumeLockError> );

} // namespace

TEST( Status, KeepsTheFirstErrorUntilItIsForgiven )
{
    OSError status;
    EXPECT_EQ( 0, status.GetCode() );
    status = -120;
    status = -43;
    status = 0;
    status = OSError( -36 );
    status.Fix( -43 );
    EXPECT_EQ( -120, status.GetCode() );
    status.Fix( -120 );
    EXPECT_EQ( 0, status.GetCode() );
    status = OSError( -36 );
    OSError const& alias = status;
    status = alias;
    EXPECT_EQ( -36, OSError( status ).GetCode() );

    status.AnnounceError( -1 );
    status.AnnounceCancellation( -36, -1 );
    status.AnnounceDuplication( -1 );
    status.AnnounceDestruction( -1 );
    status.Debug( -1 );
    alias.Debug();
    EXPECT_EQ( -36, status.GetCode() ) << "the hooks change nothing";
}

TEST( Status, IsThrownAsMemoryFullOrAsItself )
{
    using namespace ::testing;
    EXPECT_THAT( [] { ThrowRealOSError( -108 ); },
        Throws<MemoryFullError>( Property( &OSError::GetCode, -108 ) ) );
    EXPECT_THAT( [] { ThrowRealOSError( -43 ); },
        AllOf(
            Throws<OSError>( Property( &OSError::GetCode, -43 ) ), Not( Throws<MemoryError>() ) ) );
}
