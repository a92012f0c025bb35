#pragma once

#include "foundation/Kernel.h"

#include <cstddef>
#include <cstdint>

/// The generator polynomial, without its highest term, x^32.
inline constexpr std::uint32_t kChecksumPolynomial = 0x04C11DB7;

/// Pieces of fewer bytes go through the shared table, byte by byte; no kernel gets them.
inline constexpr std::size_t kFewestBytesForKernels = 4;

/// What `length` bytes make of the register `crc`.
using ChecksumFunction = std::uint32_t(
    std::uint32_t crc, unsigned char const* bytes, std::size_t length );

/// The best first.
std::span<Kernel<ChecksumFunction> const> ChecksumKernels();

/// The portable body: 16 bytes at a time, each with a table of its own.
ChecksumFunction ChecksumBySlicing;
