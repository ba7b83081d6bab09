// SPDX-License-Identifier: MIT
#include "module_output.h"

namespace vntts::speechd {

void AppendEscaped(std::span<const std::uint8_t> bytes, std::string& out) {
  constexpr std::uint8_t kEscape = 0x7D;
  for (std::uint8_t b : bytes) {
    if (b == '\n' || b == kEscape) {
      out += static_cast<char>(kEscape);
      out += static_cast<char>(b ^ 0x20);
    } else {
      out += static_cast<char>(b);
    }
  }
}

void ModuleOutput::Write(const std::string& message) {
  std::lock_guard lock(mutex_);
  write_(message);
}

void ModuleOutput::Lines(std::initializer_list<std::string_view> lines) {
  std::string message;
  for (std::string_view line : lines) {
    message += line;
    message += '\n';
  }
  Write(message);
}

void ModuleOutput::Mark(std::string_view name) {
  std::string message = "700-";
  message += name;
  message += "\n700 INDEX MARK\n";
  Write(message);
}

void ModuleOutput::Audio(std::span<const std::int16_t> samples, std::uint32_t rate) {
  std::string message = "705-bits=16\n705-num_channels=1\n705-sample_rate=" + std::to_string(rate) +
                        "\n705-num_samples=" + std::to_string(samples.size()) + "\n705-AUDIO";
  message += '\0';
  std::string data;
  data.reserve(samples.size() * 2 + 16);
  for (std::int16_t s : samples) {
    const auto u = static_cast<std::uint16_t>(s);
    const std::uint8_t little_endian[2] = {static_cast<std::uint8_t>(u & 0xFF),
                                           static_cast<std::uint8_t>(u >> 8)};
    AppendEscaped(little_endian, data);
  }
  message += data;
  message += "\n705 AUDIO\n";
  Write(message);
}

} // namespace vntts::speechd
