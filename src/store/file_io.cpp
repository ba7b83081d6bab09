// SPDX-License-Identifier: MIT
#include "store/file_io.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vntts {
namespace {

std::string ErrnoText(int error) {
  return std::strerror(error);
}

std::string Describe(const std::filesystem::path& path, std::string_view what, int error) {
  std::string text = path.string();
  text.append(": ").append(what);
  if (error != 0) text.append(": ").append(ErrnoText(error));
  return text;
}

// Closes a descriptor on every path out of a function.
class FdGuard {
public:
  explicit FdGuard(int fd) : fd_(fd) {}
  ~FdGuard() {
    if (fd_ >= 0) ::close(fd_);
  }
  FdGuard(const FdGuard&) = delete;
  FdGuard& operator=(const FdGuard&) = delete;
  int get() const { return fd_; }
  int release() { return std::exchange(fd_, -1); }

private:
  int fd_;
};

// A temporary file in the target's folder (rename is atomic only within one file system).
struct Temporary {
  int fd = -1;
  std::filesystem::path path;
};

// A save that was interrupted (the process killed before its rename) leaves its temporary
// file behind. Saving the same file again removes those old enough that no save can still be
// writing them.
constexpr auto kStaleTemporaryAge = std::chrono::minutes(10);

void RemoveStaleTemporaries(const std::filesystem::path& target) {
  const std::string prefix = target.filename().string() + ".tmp-";
  const auto folder = target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
  const auto now = std::filesystem::file_time_type::clock::now();
  std::error_code error;
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (name.size() != prefix.size() + 6 || !name.starts_with(prefix)) continue;
    std::error_code ignored;
    const auto written = std::filesystem::last_write_time(it->path(), ignored);
    if (!ignored && now - written > kStaleTemporaryAge)
      std::filesystem::remove(it->path(), ignored);
  }
}

StoreResult MakeTemporary(const std::filesystem::path& target, Temporary& temp) {
  RemoveStaleTemporaries(target);
  std::filesystem::path pattern = target;
  pattern += ".tmp-XXXXXX";
  std::string name = pattern.string();
  const int fd = ::mkostemp(name.data(), O_CLOEXEC);
  if (fd < 0)
    return StoreResult::Failure(Describe(target, "cannot create a temporary file", errno));
  temp.fd = fd;
  temp.path = name;
  // Keep the permission bits of the file being replaced; mkstemp makes owner-only files.
  struct stat old {};
  const mode_t mode = ::stat(target.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0644;
  ::fchmod(fd, mode);
  return StoreResult::Success();
}

// The rename itself survives a crash only once the folder entry reaches the disk.
void SyncFolderOf(const std::filesystem::path& path) {
  const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
  const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd >= 0) {
    ::fsync(fd);
    ::close(fd);
  }
}

StoreResult Commit(const Temporary& temp, const std::filesystem::path& target) {
  if (::rename(temp.path.c_str(), target.c_str()) != 0) {
    const int error = errno;
    ::unlink(temp.path.c_str());
    return StoreResult::Failure(Describe(target, "cannot replace the file", error));
  }
  SyncFolderOf(target);
  return StoreResult::Success();
}

} // namespace

StoreResult ReadWholeFile(const std::filesystem::path& path, std::string& out) {
  out.clear();
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return StoreResult::Failure(Describe(path, "cannot open the file", errno));
  FdGuard guard(fd);
  struct stat info {};
  if (::fstat(fd, &info) != 0)
    return StoreResult::Failure(Describe(path, "cannot read the file", errno));
  if (!S_ISREG(info.st_mode))
    return StoreResult::Failure(Describe(path, "is not a regular file", 0));
  if (static_cast<std::uintmax_t>(info.st_size) > kMaxStoreFileBytes)
    return StoreResult::Failure(Describe(path, "is too large for a word store", 0));
  out.resize(static_cast<std::size_t>(info.st_size));
  std::size_t done = 0;
  while (done < out.size()) {
    const ssize_t n = ::read(fd, out.data() + done, out.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return StoreResult::Failure(Describe(path, "cannot read the file", errno));
    if (n == 0) break; // the file shrank while we read it
    done += static_cast<std::size_t>(n);
  }
  out.resize(done);
  return StoreResult::Success();
}

bool ReplacementFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd_, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

bool ReplacementFile::Write(std::span<const std::uint8_t> bytes) {
  return Write(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

StoreResult ReplaceFileAtomically(const std::filesystem::path& path,
                                  const std::function<bool(ReplacementFile&)>& fill) {
  Temporary temp;
  if (auto made = MakeTemporary(path, temp); !made) return made;
  FdGuard guard(temp.fd);
  ReplacementFile file(temp.fd);
  errno = 0;
  const bool filled = fill(file);
  const int write_error = errno;
  if (!filled || ::fsync(temp.fd) != 0) {
    ::unlink(temp.path.c_str());
    return StoreResult::Failure(
        Describe(path, "cannot write the new contents", filled ? errno : write_error));
  }
  if (::close(guard.release()) != 0) {
    const int error = errno;
    ::unlink(temp.path.c_str());
    return StoreResult::Failure(Describe(path, "cannot write the new contents", error));
  }
  return Commit(temp, path);
}

StoreResult ReplaceFileAtomically(const std::filesystem::path& path, std::string_view contents) {
  return ReplaceFileAtomically(path, [&](ReplacementFile& file) { return file.Write(contents); });
}

StoreResult ReplaceFileByBuilding(
    const std::filesystem::path& path,
    const std::function<StoreResult(const std::filesystem::path& temporary)>& build) {
  Temporary temp;
  if (auto made = MakeTemporary(path, temp); !made) return made;
  ::close(temp.fd);
  if (auto built = build(temp.path); !built) {
    ::unlink(temp.path.c_str());
    return built;
  }
  // The builder has closed the file; flush it before it takes the target's name.
  const int fd = ::open(temp.path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd >= 0) {
    ::fsync(fd);
    ::close(fd);
  }
  return Commit(temp, path);
}

} // namespace vntts
