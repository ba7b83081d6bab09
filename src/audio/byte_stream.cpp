// SPDX-License-Identifier: MIT
#include "audio/byte_stream.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vntts {
namespace {

// Opens an existing file for reading (and writing with "r+") without waiting: opening a FIFO
// for reading blocks until a writer comes, so the file is opened non-blocking and refused
// unless it is a regular file.
std::FILE* OpenRegular(const std::string& path, const char* mode) {
  const bool update = std::strchr(mode, '+') != nullptr;
  const int fd = ::open(path.c_str(), (update ? O_RDWR : O_RDONLY) | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return nullptr;
  struct stat st {};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) ||
      ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0) {
    ::close(fd);
    return nullptr;
  }
  std::FILE* f = ::fdopen(fd, mode);
  if (!f) ::close(fd);
  return f;
}

} // namespace

std::unique_ptr<FileStream> FileStream::Open(const std::string& path, const char* mode) {
  if (mode[0] == 'r') {
    std::FILE* f = OpenRegular(path, mode);
    return f ? std::unique_ptr<FileStream>(new FileStream(f)) : nullptr;
  }
  std::FILE* f = std::fopen(path.c_str(), mode);
  if (!f) return nullptr;
  // A directory cannot be written as a file.
  struct stat st {};
  if (::fstat(fileno(f), &st) != 0 || S_ISDIR(st.st_mode)) {
    std::fclose(f);
    return nullptr;
  }
  return std::unique_ptr<FileStream>(new FileStream(f));
}

FileStream::~FileStream() {
  Close();
}

bool FileStream::Close() {
  if (!file_) return true;
  const bool ok = std::fclose(file_) == 0;
  file_ = nullptr;
  return ok;
}

std::size_t FileStream::Read(void* out, std::size_t count) {
  if (!file_) return 0;
  // stdio needs a positioning call between a write and a read on an update stream.
  if (last_was_write_) std::fseek(file_, 0, SEEK_CUR);
  last_was_write_ = false;
  last_was_read_ = true;
  return std::fread(out, 1, count, file_);
}

std::size_t FileStream::Write(const void* in, std::size_t count) {
  if (!file_) return 0;
  if (last_was_read_) std::fseek(file_, 0, SEEK_CUR);
  last_was_read_ = false;
  last_was_write_ = true;
  return std::fwrite(in, 1, count, file_);
}

bool FileStream::Seek(std::uint64_t position) {
  if (!file_ || position > static_cast<std::uint64_t>(INT64_MAX)) return false;
  last_was_read_ = last_was_write_ = false;
  return fseeko(file_, static_cast<off_t>(position), SEEK_SET) == 0;
}

std::uint64_t FileStream::Tell() const {
  if (!file_) return 0;
  const off_t p = ftello(file_);
  return p < 0 ? 0 : static_cast<std::uint64_t>(p);
}

std::uint64_t FileStream::size() const {
  if (!file_) return 0;
  std::fflush(file_);
  struct stat st {};
  if (::fstat(fileno(file_), &st) != 0) return 0;
  return static_cast<std::uint64_t>(st.st_size);
}

bool FileStream::Flush() {
  return file_ && std::fflush(file_) == 0;
}

bool FileStream::Truncate(std::uint64_t size) {
  if (!Flush() || size > static_cast<std::uint64_t>(INT64_MAX)) return false;
  last_was_read_ = last_was_write_ = false;
  return ::ftruncate(fileno(file_), static_cast<off_t>(size)) == 0;
}

std::size_t MemoryStream::Read(void* out, std::size_t count) {
  if (position_ >= bytes_.size()) return 0;
  const std::size_t n = std::min<std::uint64_t>(count, bytes_.size() - position_);
  std::memcpy(out, bytes_.data() + position_, n);
  position_ += n;
  return n;
}

bool MemoryStream::Seek(std::uint64_t position) {
  if (position > bytes_.size()) return false;
  position_ = position;
  return true;
}

} // namespace vntts
