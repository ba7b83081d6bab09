// SPDX-License-Identifier: MIT
#include "audio/mpeg/crc16.h"

namespace vntts::mpeg {
namespace {

std::uint16_t Feed(std::uint16_t crc, std::uint32_t byte, int bits) {
  for (int i = bits - 1; i >= 0; --i) {
    const bool top = (crc & 0x8000) != 0;
    const bool bit = ((byte >> i) & 1) != 0;
    crc = static_cast<std::uint16_t>(crc << 1);
    if (top != bit) crc ^= 0x8005;
  }
  return crc;
}

} // namespace

bool CrcMatches(const std::uint8_t* frame, std::size_t protected_bits) {
  std::uint16_t crc = 0xFFFF;
  crc = Feed(crc, frame[2], 8);
  crc = Feed(crc, frame[3], 8);
  const std::uint8_t* p = frame + 6;
  for (; protected_bits >= 8; protected_bits -= 8)
    crc = Feed(crc, *p++, 8);
  if (protected_bits) crc = Feed(crc, *p >> (8 - protected_bits), static_cast<int>(protected_bits));
  const std::uint16_t stored = static_cast<std::uint16_t>((frame[4] << 8) | frame[5]);
  return crc == stored;
}

} // namespace vntts::mpeg
