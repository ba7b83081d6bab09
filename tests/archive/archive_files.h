// SPDX-License-Identifier: MIT
#pragma once
// Helpers that lay archive files and recording folders out in a scratch folder.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "audio/archive/string_list.h"

namespace vntts::testing {

class ScratchDir {
public:
  ScratchDir() {
    std::random_device rd;
    path_ = std::filesystem::temp_directory_path() /
            ("vntts-archive-" + std::to_string(::getpid()) + "-" + std::to_string(rd()));
    std::filesystem::create_directories(path_);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(std::string_view name) const { return (path_ / name).string(); }

private:
  std::filesystem::path path_;
};

inline void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

inline void WriteText(const std::string& path, std::string_view text) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

inline std::vector<std::uint8_t> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void AppendU32(std::vector<std::uint8_t>& out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i)
    out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

struct FakeUnit {
  std::string key;
  std::uint32_t offset;
  std::uint32_t length;
};

// <stem>.arr and <stem>.idx for the units, and a data file of data_size bytes.
inline void WriteArchiveFiles(const std::string& stem, const std::vector<FakeUnit>& units,
                              std::size_t data_size) {
  std::vector<std::string> keys;
  std::vector<std::uint8_t> records;
  for (const auto& u : units) {
    keys.push_back(u.key);
    AppendU32(records, u.offset);
    AppendU32(records, u.length);
  }
  WriteBytes(stem + ".arr", SerializeStringList(keys));
  WriteBytes(stem + ".idx", records);
  WriteBytes(stem + ".dat", std::vector<std::uint8_t>(data_size, 0));
}

} // namespace vntts::testing
