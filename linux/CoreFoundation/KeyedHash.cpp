#include "linux/CoreFoundation/KeyedHash.h"

#include <chrono>
#include <sys/random.h>

namespace
{

std::uint64_t DrawPoint()
{
    std::uint64_t drawn = 0;
    if ( getrandom( &drawn, sizeof drawn, GRND_NONBLOCK ) != sizeof drawn )
    {
        drawn = static_cast<std::uint64_t>(
                    std::chrono::steady_clock::now().time_since_epoch().count() ) *
                0x9E3779B97F4A7C15U;
    }
    return drawn % ( kHashPrime - 2 ) + 2;
}

} // namespace

std::uint64_t HashPoint()
{
    static std::uint64_t const point = DrawPoint();
    return point;
}
