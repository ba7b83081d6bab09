// SPDX-License-Identifier: MIT
#pragma once
// A whole file mapped read-only; the only part of the decoder that touches the file system.
#include <cstddef>
#include <cstdint>
#include <string>

namespace vntts::mpeg {

class MappedFile {
public:
  MappedFile() = default;
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // False when the file cannot be opened or mapped. An empty file maps to no bytes.
  bool Open(const std::string& path);
  const std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }

private:
  void Close();
  int fd_ = -1;
  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  bool mapped_ = false;
};

} // namespace vntts::mpeg
