// SPDX-License-Identifier: MIT
#pragma once
// Building and reading raw WAV bytes in tests, independently of the code under test.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "support/temp_folder.h"

namespace vntts::test {

inline void put_u16(std::vector<std::uint8_t>& b, std::uint16_t v) {
  b.push_back(static_cast<std::uint8_t>(v));
  b.push_back(static_cast<std::uint8_t>(v >> 8));
}
inline void put_u32(std::vector<std::uint8_t>& b, std::uint32_t v) {
  for (int i = 0; i < 4; ++i)
    b.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}
inline void put_tag(std::vector<std::uint8_t>& b, std::string_view tag) {
  b.insert(b.end(), tag.begin(), tag.end());
}
inline std::uint32_t get_u32(const std::vector<std::uint8_t>& b, std::size_t at) {
  return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | static_cast<std::uint32_t>(b[at + 3]) << 24;
}
inline std::uint16_t get_u16(const std::vector<std::uint8_t>& b, std::size_t at) {
  return static_cast<std::uint16_t>(b[at] | b[at + 1] << 8);
}

// A canonical file: RIFF, 16-byte fmt, data; then the trailer bytes.
inline std::vector<std::uint8_t> wav_bytes(std::uint16_t channels, std::uint32_t rate,
                                           std::uint16_t bits,
                                           const std::vector<std::uint8_t>& data,
                                           const std::vector<std::uint8_t>& trailer = {}) {
  std::vector<std::uint8_t> b;
  put_tag(b, "RIFF");
  put_u32(b, static_cast<std::uint32_t>(36 + data.size() + (data.size() & 1)));
  put_tag(b, "WAVE");
  put_tag(b, "fmt ");
  put_u32(b, 16);
  put_u16(b, 1);
  put_u16(b, channels);
  put_u32(b, rate);
  const auto align = static_cast<std::uint16_t>(channels * (bits / 8));
  put_u32(b, rate * align);
  put_u16(b, align);
  put_u16(b, bits);
  put_tag(b, "data");
  put_u32(b, static_cast<std::uint32_t>(data.size()));
  b.insert(b.end(), data.begin(), data.end());
  if (data.size() & 1) b.push_back(0);
  b.insert(b.end(), trailer.begin(), trailer.end());
  return b;
}

inline std::vector<std::uint8_t> read_file(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}
inline void write_file(const std::filesystem::path& p, const std::vector<std::uint8_t>& b) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
}

using TempDir = TempFolder;

} // namespace vntts::test
