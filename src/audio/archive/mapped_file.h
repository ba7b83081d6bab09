// SPDX-License-Identifier: MIT
#pragma once
// A whole file mapped read-only. Empty files and files that cannot be opened or mapped give an
// object whose view is empty; error() then tells why (errno value, 0 for an empty file).
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace vntts {

class MappedFile {
public:
  MappedFile() = default;
  explicit MappedFile(const std::filesystem::path& path, bool random_access = false);
  ~MappedFile();
  MappedFile(MappedFile&& other) noexcept;
  MappedFile& operator=(MappedFile&& other) noexcept;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  bool Mapped() const { return data_ != nullptr; }
  std::span<const std::uint8_t> Bytes() const {
    return {static_cast<const std::uint8_t*>(data_), size_};
  }
  int Error() const { return error_; }

private:
  void Release();

  void* data_ = nullptr;
  std::size_t size_ = 0;
  int error_ = 0;
};

} // namespace vntts
