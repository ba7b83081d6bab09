// SPDX-License-Identifier: MIT
#pragma once
// Random-access bytes for the RIFF layer: a file on disk or a block in memory. Reads and
// writes report how many bytes they moved; nothing throws.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>

namespace vntts {

class ByteStream {
public:
  virtual ~ByteStream() = default;
  virtual std::size_t Read(void* out, std::size_t count) = 0;
  virtual std::size_t Write(const void* in, std::size_t count) = 0;
  // False when the position cannot be reached (negative, or past the end of memory).
  virtual bool Seek(std::uint64_t position) = 0;
  virtual std::uint64_t Tell() const = 0;
  virtual std::uint64_t size() const = 0;
  // Pushes buffered writes out; false when they did not all land.
  virtual bool Flush() { return true; }
  // Cuts the stream to `size` bytes; false when it cannot be cut.
  virtual bool Truncate(std::uint64_t size) {
    (void)size;
    return false;
  }
};

// A stdio file opened with fopen's mode string ("rb", "wb", "r+b"). Only regular files are
// opened for reading ("r..."): a FIFO or a device would never end or never answer.
class FileStream final : public ByteStream {
public:
  static std::unique_ptr<FileStream> Open(const std::string& path, const char* mode);
  ~FileStream() override;
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  std::size_t Read(void* out, std::size_t count) override;
  std::size_t Write(const void* in, std::size_t count) override;
  bool Seek(std::uint64_t position) override;
  std::uint64_t Tell() const override;
  std::uint64_t size() const override;
  bool Flush() override;
  bool Truncate(std::uint64_t size) override;
  // Flushes and closes; false when buffered data could not be written.
  bool Close();

private:
  explicit FileStream(std::FILE* file) : file_(file) {}
  std::FILE* file_;
  bool last_was_write_ = false;
  bool last_was_read_ = false;
};

// Read-only view of bytes owned by the caller.
class MemoryStream final : public ByteStream {
public:
  explicit MemoryStream(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  std::size_t Read(void* out, std::size_t count) override;
  std::size_t Write(const void*, std::size_t) override { return 0; }
  bool Seek(std::uint64_t position) override;
  std::uint64_t Tell() const override { return position_; }
  std::uint64_t size() const override { return bytes_.size(); }

private:
  std::span<const std::uint8_t> bytes_;
  std::uint64_t position_ = 0;
};

} // namespace vntts
