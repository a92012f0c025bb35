#include "platform/OSError.h"
#include "platform/FileError.h"

#include <gmock/gmock.h>

#include <type_traits>

namespace
{

// Whether each class derives from the one before it, and adds nothing.
template<typename Base, typename Derived, typename... More>
constexpr bool IsLine()
{
    bool const derives = std::is_base_of_v<Base, Derived> && sizeof( Derived ) == sizeof( Base );
    if constexpr ( sizeof...( More ) != 0 )
        return derives && IsLine<Derived, More...>();
    return derives;
}

static_assert( sizeof( OSError ) == 4 && !std::is_polymorphic_v<OSError> );
static_assert( IsLine<OSError, MemoryError, MemoryFullError>() );
static_assert( IsLine<OSError, FileError, NotAFileError>() );
static_assert(
    IsLine<OSError, FileError, FileAccessError, VolumeLockError, HardwareVolumeLockError>() );
static_assert( IsLine<VolumeLockError, SoftwareVolumeLockError>() );

} // namespace

TEST( Status, KeepsTheFirstErrorUntilItIsForgiven )
{
    OSError status;
    EXPECT_EQ( 0, status.GetCode() );
    status = -120;
    for ( std::int32_t const code : { -43, 0 } )
        status = code;
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
    auto const other = []
    {
        try
        {
            ThrowRealOSError( -43 );
        }
        catch ( MemoryError const& )
        {
        }
    };
    EXPECT_THAT( other, Throws<OSError>( Property( &OSError::GetCode, -43 ) ) );
}
