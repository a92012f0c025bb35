#pragma once

#include "streams/DataReceiver.h"

#include <cstdint>

/// Computes the CRC-32/MPEG-2 of a stream: polynomial 0x04C11DB7, most significant bit first,
/// register 0xFFFFFFFF at the start, neither input nor output reflected, nothing XORed at the end.
/// The check value, that of the nine digits "123456789", is 0x0376E6E7.
///
/// How the stream is cut into pieces makes no difference. Nothing here allocates or throws.
///
/// All receivers share one table, which is filled before main begins. Every construction and every
/// call of Table writes it anew, entry by entry, always with the same values; that is safe while
/// other threads construct, receive and write it too.
class ChecksumReceiver : public DataReceiver
{
  public:
    ChecksumReceiver();

    using DataReceiver::Receive;

    /// Back to the checksum of no bytes.
    void Start() override;

    void Receive( ConstData data ) override;

    /// Nothing is left to do.
    void ReceiveEnd() override;

    /// Fills the shared table and returns its 256 entries. Entry i is what eight zero bits make of
    /// a register that holds i in its upper byte.
    ///
    /// The table lives as long as the program. Whoever reads an entry while another thread may be
    /// writing the table does it with std::atomic_ref, as this class does.
    static std::uint32_t const* MakeTable();

    /// Also fills the table first.
    static std::uint32_t const* Table();

    /// The register: the checksum of all bytes since the last start, or since the construction.
    std::uint32_t checksum;

  private:
    std::uint32_t const* mTable;
};
