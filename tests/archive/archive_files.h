// SPDX-License-Identifier: MIT
#pragma once
// Helpers that lay archive files and recording folders out in a scratch folder.
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "audio/archive/string_list.h"
#include "support/temp_folder.h"

namespace vntts::testing {

using Bytes = std::vector<std::uint8_t>;

inline void WriteBytes(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

inline Bytes ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

struct FakeUnit {
  std::string key;
  std::uint32_t offset;
  std::uint32_t length;
};

// The record file's bytes: offset and length of each unit, 32-bit little-endian.
inline Bytes RecordBytes(const std::vector<FakeUnit>& units) {
  Bytes out;
  for (const auto& u : units)
    for (const std::uint32_t v : {u.offset, u.length})
      for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
  return out;
}

// <stem>.arr and <stem>.idx for the units, and a data file of data_size bytes.
inline void WriteArchiveFiles(const std::string& stem, const std::vector<FakeUnit>& units,
                              std::size_t data_size) {
  std::vector<std::string> keys;
  for (const auto& u : units)
    keys.push_back(u.key);
  WriteBytes(stem + ".arr", SerializeStringList(keys));
  WriteBytes(stem + ".idx", RecordBytes(units));
  WriteBytes(stem + ".dat", Bytes(data_size, 0));
}

} // namespace vntts::testing
