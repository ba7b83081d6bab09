// SPDX-License-Identifier: MIT
#pragma once
// What the module writes to speech-dispatcher: replies, events and audio, each written whole
// so that lines of two threads never interleave. A reply that spans a data block (SET, AUDIO,
// SPEAK ...) holds the output from its first line to its last with Hold(), so that no event
// comes between a command and its reply.
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

namespace vntts::speechd {

class ModuleOutput {
public:
  // `write` receives whole messages (one or more lines, each ending in '\n').
  explicit ModuleOutput(std::function<void(std::string_view)> write) : write_(std::move(write)) {}

  // Writes `lines` (each without its line end) as one message.
  void Lines(std::initializer_list<std::string_view> lines);
  void Line(std::string_view line) { Lines({line}); }

  // An index mark: "700-name" and "700 INDEX MARK".
  void Mark(std::string_view name);

  // Mono 16-bit samples at `rate` for the server to play, as a 705 AUDIO event whose data has
  // line ends and 0x7D escaped (0x7D, then the byte with bit 5 flipped).
  void Audio(std::span<const std::int16_t> samples, std::uint32_t rate);

  [[nodiscard]] std::unique_lock<std::recursive_mutex> Hold() {
    return std::unique_lock<std::recursive_mutex>(mutex_);
  }

private:
  void Write(const std::string& message);

  std::function<void(std::string_view)> write_;
  std::recursive_mutex mutex_;
};

// The escaping of audio data: '\n' and 0x7D become 0x7D followed by the byte XOR 0x20.
void AppendEscaped(std::span<const std::uint8_t> bytes, std::string& out);

} // namespace vntts::speechd
