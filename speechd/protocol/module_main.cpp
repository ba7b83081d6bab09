// SPDX-License-Identifier: MIT
#include "module_main.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <unistd.h>

#include "module_output.h"
#include "module_server.h"

namespace vntts::speechd {
namespace {

void WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return; // the server is gone; the end of input will follow
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
}

} // namespace

int RunModule(Synthesizer& synthesizer, int input_fd, int output_fd) {
  std::signal(SIGPIPE, SIG_IGN);
  ModuleOutput output([output_fd](std::string_view message) { WriteAll(output_fd, message); });
  ModuleServer server(synthesizer, output, [](int, std::string_view text) {
    std::fprintf(stderr, "sd_vntts: %.*s\n", static_cast<int>(text.size()), text.data());
  });
  std::string pending;
  char buffer[4096];
  while (true) {
    const ssize_t n = ::read(input_fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    pending.append(buffer, static_cast<std::size_t>(n));
    std::size_t start = 0, end;
    while ((end = pending.find('\n', start)) != std::string::npos) {
      if (!server.OnLine(std::string_view(pending).substr(start, end - start))) return 0;
      start = end + 1;
    }
    pending.erase(0, start);
  }
  server.Shutdown();
  return 0;
}

} // namespace vntts::speechd
