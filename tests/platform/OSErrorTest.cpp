#include "platform/OSError.h"

#include <gmock/gmock.h>

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
    status.AnnounceError( -43 );
    status.AnnounceCancellation( -43, -43 );
    status.AnnounceDuplication( -43 );
    status.AnnounceDestruction( -43 );
    status.Debug( -43 );
    alias.Debug();
    EXPECT_EQ( -36, OSError( status ).GetCode() );
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
