// SPDX-License-Identifier: MIT
#include "wave_target.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace vntts::cli {
namespace fs = std::filesystem;
namespace {

bool IsWave(int fd) {
  char head[12] = {};
  return ::pread(fd, head, sizeof head, 0) == static_cast<ssize_t>(sizeof head) &&
         std::memcmp(head, "RIFF", 4) == 0 && std::memcmp(head + 8, "WAVE", 4) == 0;
}

// Copies what is left of `from` after its offset to `to` at its offset.
bool CopyAll(int from, int to) {
  // The kernel copies between files without the bytes passing through this process; a pipe,
  // another file system on an older kernel or any other refusal goes on with plain reads and
  // writes from where it stopped (both offsets have moved past what was copied).
  for (;;) {
    const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, 1 << 30, 0);
    if (copied == 0) return true;
    if (copied < 0 && errno != EINTR) break;
  }
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = ::read(from, buffer, sizeof buffer);
    if (got == 0) return true;
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    for (ssize_t done = 0; done < got;) {
      const ssize_t put = ::write(to, buffer + done, static_cast<std::size_t>(got - done));
      if (put < 0 && errno == EINTR) continue;
      if (put <= 0) return false;
      done += put;
    }
  }
}

fs::path MakeTemporaryFolder() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vntts-say-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) return {};
  return pattern;
}

} // namespace

WaveTarget::WaveTarget(const std::string& path, bool append) : path_(path) {
  to_stdout_ = path == "-";
  if (to_stdout_) {
    fd_ = STDOUT_FILENO;
  } else {
    struct stat info {};
    const bool exists = ::stat(path.c_str(), &info) == 0;
    if (exists && S_ISDIR(info.st_mode)) {
      Fail("is a folder; give the name of a WAV file");
      return;
    }
    if (exists && !S_ISREG(info.st_mode)) {
      Fail("is not a regular file");
      return;
    }
    // Opened now, without truncating, so that a file that cannot be written is refused before
    // any speech is made; created only when there was none (and then removed on failure).
    fd_ = ::open(path.c_str(),
                 (append ? O_RDWR : O_WRONLY) | O_CLOEXEC | (exists ? 0 : O_CREAT | O_EXCL), 0666);
    if (fd_ < 0) {
      Fail(std::strerror(errno));
      return;
    }
    created_ = !exists;
    if (append && exists && !IsWave(fd_)) {
      Fail("is not a WAV file; --append adds only to WAV files");
      return;
    }
  }
  folder_ = MakeTemporaryFolder();
  if (folder_.empty()) {
    Fail(std::string("cannot make a temporary folder: ") + std::strerror(errno));
    return;
  }
  current_ = folder_ / "speech-0.wav";
  if (append && !to_stdout_ && !created_) {
    const int copy = ::open(current_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    const bool ok = copy >= 0 && ::lseek(fd_, 0, SEEK_SET) == 0 && CopyAll(fd_, copy);
    if (copy >= 0) ::close(copy);
    if (!ok) Fail(std::string("cannot be read: ") + std::strerror(errno));
  }
}

WaveTarget::~WaveTarget() {
  if (!to_stdout_ && fd_ >= 0) ::close(fd_);
  if (created_ && !committed_) ::unlink(path_.c_str());
  if (!folder_.empty()) {
    std::error_code ec;
    fs::remove_all(folder_, ec);
  }
}

bool WaveTarget::Fail(const std::string& why) {
  if (error_.empty()) error_ = (to_stdout_ ? std::string("standard output") : path_) + ": " + why;
  return false;
}

std::string WaveTarget::NextPiecePath() {
  const fs::path next = folder_ / ("speech-" + std::to_string(++pieces_) + ".wav");
  std::error_code ec;
  if (fs::exists(current_, ec)) fs::rename(current_, next, ec);
  current_ = next;
  return current_.string();
}

bool WaveTarget::HasSpeech() const {
  std::error_code ec;
  return fs::exists(current_, ec);
}

bool WaveTarget::Commit() {
  // A file this command made holds nothing of the user's: the finished speech takes its name
  // (when both lie on one file system) instead of being copied into it.
  if (created_ && !to_stdout_ && ::rename(current_.c_str(), path_.c_str()) == 0) {
    committed_ = true;
    return true;
  }
  const int from = ::open(current_.c_str(), O_RDONLY | O_CLOEXEC);
  if (from < 0) return Fail(std::string("no speech was written: ") + std::strerror(errno));
  bool ok = true;
  if (!to_stdout_) ok = ::ftruncate(fd_, 0) == 0 && ::lseek(fd_, 0, SEEK_SET) == 0;
  ok = ok && CopyAll(from, fd_);
  ::close(from);
  if (!ok) return Fail(std::strerror(errno));
  committed_ = true;
  return true;
}

} // namespace vntts::cli
