// SPDX-License-Identifier: MIT
#include "audio/wave_format.h"

#include <algorithm>
#include <cstring>

namespace vntts {
namespace {

void Put16(std::uint8_t* p, std::uint16_t v) {
  p[0] = static_cast<std::uint8_t>(v);
  p[1] = static_cast<std::uint8_t>(v >> 8);
}
void Put32(std::uint8_t* p, std::uint32_t v) {
  for (int i = 0; i < 4; ++i)
    p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
std::uint16_t Get16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
std::uint32_t Get32(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// Every standard subformat is its plain tag followed by these 14 bytes.
constexpr std::array<std::uint8_t, 14> kSubformatTail = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                         0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

} // namespace

std::array<std::uint8_t, WaveFormat::kBytes> WaveFormat::ToBytes() const {
  std::array<std::uint8_t, kBytes> out{};
  Put16(&out[0], format_tag);
  Put16(&out[2], channels);
  Put32(&out[4], samples_per_second);
  Put32(&out[8], average_bytes_per_second);
  Put16(&out[12], block_align);
  Put16(&out[14], bits_per_sample);
  return out;
}

WaveFormat WaveFormat::FromBytes(const std::uint8_t* bytes, std::size_t count) {
  std::array<std::uint8_t, kBytes> raw{};
  std::memcpy(raw.data(), bytes, std::min(count, kBytes));
  WaveFormat f;
  f.format_tag = Get16(&raw[0]);
  f.channels = Get16(&raw[2]);
  f.samples_per_second = Get32(&raw[4]);
  f.average_bytes_per_second = Get32(&raw[8]);
  f.block_align = Get16(&raw[12]);
  f.bits_per_sample = Get16(&raw[14]);
  return f;
}

WaveFormat ParseFormatChunk(const std::uint8_t* bytes, std::size_t count,
                            WaveFormatExtension& extension) {
  WaveFormat f = WaveFormat::FromBytes(bytes, count);
  extension = {};
  // Extension size (22) at 16, then valid bits, channel mask and the subformat.
  if (f.format_tag != WaveFormat::kExtensibleTag || count < WaveFormatExtension::kChunkBytes ||
      Get16(bytes + 16) < 22)
    return f;
  extension.valid_bits = Get16(bytes + 18);
  extension.channel_mask = Get32(bytes + 20);
  const std::uint8_t* subformat = bytes + 24;
  if (std::equal(kSubformatTail.begin(), kSubformatTail.end(), subformat + 2))
    f.format_tag = Get16(subformat);
  else
    std::memcpy(extension.subformat.data(), subformat, extension.subformat.size());
  return f;
}

std::vector<std::uint8_t> FormatChunkBytes(const WaveFormat& format,
                                           const WaveFormatExtension& extension) {
  const auto plain = format.ToBytes();
  const bool extensible = format.format_tag == WaveFormat::kExtensibleTag || format.channels > 2 ||
                          format.bits_per_sample > 16;
  if (!extensible) return {plain.begin(), plain.end()};
  std::vector<std::uint8_t> out(WaveFormatExtension::kChunkBytes, 0);
  std::copy(plain.begin(), plain.end(), out.begin());
  Put16(&out[0], WaveFormat::kExtensibleTag);
  Put16(&out[16], 22);
  Put16(&out[18], extension.valid_bits ? extension.valid_bits : format.bits_per_sample);
  Put32(&out[20], extension.channel_mask);
  if (format.format_tag == WaveFormat::kExtensibleTag) {
    std::copy(extension.subformat.begin(), extension.subformat.end(), out.begin() + 24);
  } else {
    Put16(&out[24], format.format_tag);
    std::copy(kSubformatTail.begin(), kSubformatTail.end(), out.begin() + 26);
  }
  return out;
}

} // namespace vntts
