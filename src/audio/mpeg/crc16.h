// SPDX-License-Identifier: MIT
#pragma once
// The frame check word: CRC-16 with generator 0x8005 over the last two header bytes and
// the protected bits that follow the check word.
#include <cstddef>
#include <cstdint>

namespace vntts::mpeg {

// Checks the frame at `frame` (header at byte 0, check word at bytes 4..5) over
// `protected_bits` bits that start at byte 6.
bool CrcMatches(const std::uint8_t* frame, std::size_t protected_bits);

} // namespace vntts::mpeg
