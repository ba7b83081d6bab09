// SPDX-License-Identifier: MIT
#include "ui/qt/display_check.h"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace vntts::ui {
namespace {

std::string Env(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

bool ConnectUnix(const std::string& path, bool abstract) {
  const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::size_t offset = abstract ? 1 : 0; // an abstract name starts with a zero byte
  if (path.size() + offset >= sizeof address.sun_path) {
    ::close(fd);
    return false;
  }
  std::memcpy(address.sun_path + offset, path.data(), path.size());
  const auto length =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + offset + path.size());
  const bool ok = ::connect(fd, reinterpret_cast<sockaddr*>(&address), length) == 0;
  ::close(fd);
  return ok;
}

bool ConnectTcp(const std::string& host, int port) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return false;
  bool ok = false;
  for (addrinfo* a = found; a && !ok; a = a->ai_next) {
    const int fd = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC, a->ai_protocol);
    if (fd < 0) continue;
    ok = ::connect(fd, a->ai_addr, a->ai_addrlen) == 0;
    ::close(fd);
  }
  ::freeaddrinfo(found);
  return ok;
}

// DISPLAY is [host]:number[.screen]; an empty host (or "unix") is the local socket.
bool XServerReachable(const std::string& display) {
  const std::size_t colon = display.rfind(':');
  if (colon == std::string::npos) return false;
  const std::string host = display.substr(0, colon);
  const int number = std::atoi(display.c_str() + colon + 1);
  if (host.empty() || host == "unix") {
    const std::string socket = "/tmp/.X11-unix/X" + std::to_string(number);
    return ConnectUnix(socket, false) || ConnectUnix(socket, true);
  }
  return ConnectTcp(host, 6000 + number);
}

bool WaylandReachable(const std::string& display) {
  std::string path = display;
  if (path.empty()) return false;
  if (path[0] != '/') {
    const std::string runtime = Env("XDG_RUNTIME_DIR");
    if (runtime.empty()) return false;
    path = runtime + "/" + path;
  }
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISSOCK(info.st_mode);
}

} // namespace

WindowSystem ReachableWindowSystem(std::string* why) {
  const std::string platform = Env("QT_QPA_PLATFORM");
  const std::string_view name = std::string_view(platform).substr(0, platform.find(':'));
  if (!name.empty() && name != "xcb" && name != "wayland") return WindowSystem::kEnvironment;
  const std::string x = Env("DISPLAY");
  if (name != "wayland" && !x.empty() && XServerReachable(x)) return WindowSystem::kX11;
  if (name != "xcb" && WaylandReachable(Env("WAYLAND_DISPLAY"))) return WindowSystem::kWayland;
  if (why) {
    *why = x.empty() ? "No display to show the window on (DISPLAY is not set)."
                     : "No display to show the window on (cannot connect to DISPLAY " + x + ").";
  }
  return WindowSystem::kNone;
}

} // namespace vntts::ui
