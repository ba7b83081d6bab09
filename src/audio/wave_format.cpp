#include "audio/wave_format.h"

#include <algorithm>
#include <cstring>

namespace vntts {
namespace {

void put16(std::uint8_t* p, std::uint16_t v) {
  p[0] = static_cast<std::uint8_t>(v);
  p[1] = static_cast<std::uint8_t>(v >> 8);
}
void put32(std::uint8_t* p, std::uint32_t v) {
  for (int i = 0; i < 4; ++i)
    p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}
std::uint16_t get16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
std::uint32_t get32(const std::uint8_t* p) {
  return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

} // namespace

std::array<std::uint8_t, WaveFormat::kBytes> WaveFormat::to_bytes() const {
  std::array<std::uint8_t, kBytes> out{};
  put16(&out[0], format_tag);
  put16(&out[2], channels);
  put32(&out[4], samples_per_second);
  put32(&out[8], average_bytes_per_second);
  put16(&out[12], block_align);
  put16(&out[14], bits_per_sample);
  return out;
}

WaveFormat WaveFormat::from_bytes(const std::uint8_t* bytes, std::size_t count) {
  std::array<std::uint8_t, kBytes> raw{};
  std::memcpy(raw.data(), bytes, std::min(count, kBytes));
  WaveFormat f;
  f.format_tag = get16(&raw[0]);
  f.channels = get16(&raw[2]);
  f.samples_per_second = get32(&raw[4]);
  f.average_bytes_per_second = get32(&raw[8]);
  f.block_align = get16(&raw[12]);
  f.bits_per_sample = get16(&raw[14]);
  return f;
}

} // namespace vntts
