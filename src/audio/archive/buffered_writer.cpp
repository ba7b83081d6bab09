// SPDX-License-Identifier: MIT
#include "audio/archive/buffered_writer.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace vntts {

BufferedFileWriter::BufferedFileWriter(const std::string& path) {
  fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd_ < 0) error_ = errno;
}

BufferedFileWriter::~BufferedFileWriter() {
  Close();
}

void BufferedFileWriter::WriteThrough(const std::uint8_t* data, std::size_t size) {
  while (size > 0 && Ok()) {
    const ssize_t n = ::write(fd_, data, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      error_ = errno;
      return;
    }
    data += n;
    size -= static_cast<std::size_t>(n);
  }
}

void BufferedFileWriter::Flush() {
  WriteThrough(buffer_, used_);
  used_ = 0;
}

void BufferedFileWriter::Write(std::span<const std::uint8_t> bytes) {
  if (!Ok()) return;
  if (used_ + bytes.size() <= kBufferSize) {
    if (!bytes.empty()) std::memcpy(buffer_ + used_, bytes.data(), bytes.size());
    used_ += bytes.size();
    return;
  }
  Flush();
  if (bytes.size() >= kBufferSize) {
    WriteThrough(bytes.data(), bytes.size());
    return;
  }
  std::memcpy(buffer_, bytes.data(), bytes.size());
  used_ = bytes.size();
}

void BufferedFileWriter::WriteU32(std::uint32_t v) {
  const std::uint8_t le[4] = {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8),
                              static_cast<std::uint8_t>(v >> 16),
                              static_cast<std::uint8_t>(v >> 24)};
  Write(le);
}

bool BufferedFileWriter::Close() {
  if (fd_ >= 0) {
    Flush();
    if (::close(fd_) != 0 && Ok()) error_ = errno;
    fd_ = -1;
  }
  return Ok();
}

} // namespace vntts
