// SPDX-License-Identifier: MIT
#include "audio/archive/mapped_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vntts {

MappedFile::MappedFile(const std::filesystem::path& path, bool random_access) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    error_ = errno;
    return;
  }
  struct stat st {};
  if (::fstat(fd, &st) != 0) {
    error_ = errno;
  } else if (!S_ISREG(st.st_mode)) {
    error_ = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
  } else if (st.st_size > 0) {
    void* p = ::mmap(nullptr, static_cast<std::size_t>(st.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
    if (p == MAP_FAILED) {
      error_ = errno;
    } else {
      data_ = p;
      size_ = static_cast<std::size_t>(st.st_size);
      if (random_access) ::madvise(p, size_, MADV_RANDOM);
    }
  }
  ::close(fd); // the mapping keeps the file alive
}

MappedFile::~MappedFile() {
  Release();
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)),
      error_(other.error_) {}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept {
  if (this != &other) {
    Release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
    error_ = other.error_;
  }
  return *this;
}

void MappedFile::Release() {
  if (data_) ::munmap(data_, size_);
  data_ = nullptr;
  size_ = 0;
}

} // namespace vntts
