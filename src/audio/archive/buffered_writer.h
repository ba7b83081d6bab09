// SPDX-License-Identifier: MIT
#pragma once
// A file written through a 4096-byte buffer. Errors are sticky: after the first failed write
// every call is a no-op and ok() stays false, so a writer can run to its end and check once.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vntts {

class BufferedFileWriter {
public:
  static constexpr std::size_t kBufferSize = 4096;

  // Creates or truncates the file (mode 0644).
  explicit BufferedFileWriter(const std::string& path);
  ~BufferedFileWriter();
  BufferedFileWriter(const BufferedFileWriter&) = delete;
  BufferedFileWriter& operator=(const BufferedFileWriter&) = delete;

  void Write(std::span<const std::uint8_t> bytes);
  void WriteU32(std::uint32_t v);
  // Flushes and closes; returns ok().
  bool Close();

  bool Ok() const { return error_ == 0; }
  int Error() const { return error_; }

private:
  void Flush();
  void WriteThrough(const std::uint8_t* data, std::size_t size);

  int fd_ = -1;
  int error_ = 0;
  std::size_t used_ = 0;
  std::uint8_t buffer_[kBufferSize];
};

} // namespace vntts
