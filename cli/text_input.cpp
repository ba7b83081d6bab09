// SPDX-License-Identifier: MIT
#include "text_input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vntts::cli {
namespace {

const std::string kTooLong =
    "text longer than " + std::to_string(kMaxTextBytes >> 20) + " MiB; split it into parts";

} // namespace

TextInput::TextInput(const std::string& path) : name_(path == "-" ? "standard input" : path) {
  if (path == "-") {
    fd_ = STDIN_FILENO;
  } else {
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    owned_ = fd_ >= 0;
    if (fd_ < 0) {
      Fail(std::strerror(errno));
      return;
    }
  }
  struct stat info {};
  if (::fstat(fd_, &info) != 0) {
    Fail(std::strerror(errno));
  } else if (S_ISDIR(info.st_mode)) {
    Fail("is a folder, not a text file");
  } else if (S_ISREG(info.st_mode)) {
    whole_ = true;
    if (static_cast<std::uint64_t>(info.st_size) > kMaxTextBytes) Fail(kTooLong);
  } else if (!S_ISFIFO(info.st_mode) && !S_ISCHR(info.st_mode) && !S_ISSOCK(info.st_mode)) {
    Fail("is not a text file");
  } else if (S_ISCHR(info.st_mode) && ::isatty(fd_) == 0) {
    // A terminal types lines; any other character device (/dev/zero, /dev/urandom) never ends.
    Fail("is a device, not a text file");
  }
}

TextInput::~TextInput() {
  if (owned_) ::close(fd_);
}

bool TextInput::Fail(const std::string& why) {
  error_ = name_ + ": " + why;
  ended_ = true;
  return false;
}

bool TextInput::Next(std::string& piece) {
  piece.clear();
  if (ended_) return false;
  return whole_ ? ReadWhole(piece) : ReadLines(piece);
}

bool TextInput::ReadWhole(std::string& piece) {
  while (Fill(true)) {
    if (pending_.size() > kMaxTextBytes) return Fail(kTooLong); // the file grew while read
  }
  ended_ = true;
  if (!error_.empty()) return false;
  piece = std::move(pending_);
  return true;
}

bool TextInput::ReadLines(std::string& piece) {
  bool open = true;
  while (open && pending_.find('\n') == std::string::npos) {
    if (pending_.size() > kMaxTextBytes) return Fail(kTooLong);
    open = Fill(true);
  }
  // Lines that came together are spoken together, so a fast writer does not pay a pause per line.
  while (open && pending_.size() <= kMaxTextBytes && Fill(false)) {
  }
  if (!error_.empty()) return false;
  const std::size_t end = open ? pending_.rfind('\n') + 1 : pending_.size();
  if (end > kMaxTextBytes) return Fail(kTooLong);
  piece = pending_.substr(0, end);
  pending_.erase(0, end);
  if (!open && pending_.empty()) ended_ = true;
  return !piece.empty() || !ended_;
}

bool TextInput::Fill(bool wait) {
  if (!wait) {
    pollfd p{fd_, POLLIN, 0};
    if (::poll(&p, 1, 0) <= 0 || (p.revents & (POLLIN | POLLHUP)) == 0) return false;
  }
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = ::read(fd_, buffer, sizeof buffer);
    if (got > 0) {
      pending_.append(buffer, static_cast<std::size_t>(got));
      return true;
    }
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(std::strerror(errno));
    return false;
  }
}

} // namespace vntts::cli
