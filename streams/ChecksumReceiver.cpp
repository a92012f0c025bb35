#include "streams/ChecksumReceiver.h"

#include "streams/ChecksumKernels.h"

#include <atomic>

namespace
{

constexpr std::uint32_t kInitialRegister = 0xFFFFFFFF;
constexpr std::uint32_t kEntries = 256;

constinit std::uint32_t gTable[kEntries] = {};

// Fills the table before main begins.
[[maybe_unused]] std::uint32_t const* const gTableBeforeMain = ChecksumReceiver::MakeTable();

// Receivers made in several threads write the same values at the same time. Relaxed accesses make
// that defined, and are the same instructions as plain ones.
using Entry = std::atomic_ref<std::uint32_t>;
static_assert(
    Entry::is_always_lock_free && Entry::required_alignment == alignof( std::uint32_t ) );

std::uint32_t ReadEntry( std::uint32_t const& entry )
{
    // std::atomic_ref takes no const object; every entry is one of gTable, which is not const.
    return Entry( const_cast<std::uint32_t&>( entry ) ).load( std::memory_order_relaxed );
}

} // namespace

ChecksumReceiver::ChecksumReceiver() : checksum( kInitialRegister ), mTable( MakeTable() ) {}

void ChecksumReceiver::Start()
{
    checksum = kInitialRegister;
}

void ChecksumReceiver::Receive( ConstData data )
{
    auto const length = static_cast<std::size_t>( data.end() - data.begin() );
    if ( length >= kFewestBytesForKernels )
    {
        static ChecksumFunction* const fold = FirstSupported( ChecksumKernels() );
        checksum = fold( checksum, data.begin(), length );
        return;
    }
    std::uint32_t crc = checksum;
    for ( unsigned char const byte : data )
        crc = ( crc << 8 ) ^ ReadEntry( mTable[byte ^ ( crc >> 24 )] );
    checksum = crc;
}

void ChecksumReceiver::ReceiveEnd() {}

std::uint32_t const* ChecksumReceiver::MakeTable()
{
    for ( std::uint32_t i = 0; i < kEntries; ++i )
    {
        std::uint32_t value = i << 24;
        for ( int bit = 0; bit < 8; ++bit )
        {
            std::uint32_t const carry = value >> 31;
            value = ( value << 1 ) ^ ( carry * kChecksumPolynomial );
        }
        Entry( gTable[i] ).store( value, std::memory_order_relaxed );
    }
    return gTable;
}

std::uint32_t const* ChecksumReceiver::Table()
{
    return MakeTable();
}
