// SPDX-License-Identifier: MIT
#include "audio/mpeg/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vntts::mpeg {

MappedFile::~MappedFile() {
  Close();
}

void MappedFile::Close() {
  if (mapped_) munmap(const_cast<std::uint8_t*>(data_), size_);
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  data_ = nullptr;
  size_ = 0;
  mapped_ = false;
}

bool MappedFile::Open(const std::string& path) {
  Close();
  // Non-blocking, so that a FIFO is refused below instead of waiting for a writer.
  fd_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd_ < 0) return false;
  struct stat st {};
  if (fstat(fd_, &st) != 0 || !S_ISREG(st.st_mode)) {
    Close();
    return false;
  }
  size_ = static_cast<std::size_t>(st.st_size);
  if (size_ == 0) return true;
  void* view = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd_, 0);
  if (view == MAP_FAILED) {
    Close();
    return false;
  }
  madvise(view, size_, MADV_RANDOM);
  data_ = static_cast<const std::uint8_t*>(view);
  mapped_ = true;
  return true;
}

} // namespace vntts::mpeg
