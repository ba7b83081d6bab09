// SPDX-License-Identifier: MIT
#include "module_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vntts::speechd {
namespace {

void SetNumber(std::string_view value, int& target) {
  int number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error == std::errc{} && end == value.data() + value.size())
    target = std::clamp(number, -100, 100);
}

} // namespace

void ModuleSettings::Apply(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view name = line.substr(0, equals);
  const std::string_view value = line.substr(equals + 1);
  if (value == "NULL") return;
  if (name == "rate")
    SetNumber(value, rate);
  else if (name == "pitch")
    SetNumber(value, pitch);
  else if (name == "volume")
    SetNumber(value, volume);
  else if (name == "punctuation_mode")
    punctuation_mode = value;
  else if (name == "spelling_mode")
    spelling_mode = value;
  else if (name == "cap_let_recogn")
    cap_let_recogn = value;
  else if (name == "voice")
    voice = value;
  else if (name == "synthesis_voice")
    synthesis_voice = value;
  else if (name == "language")
    language = value;
}

double ModuleSettings::Speed() const {
  return rate >= 0 ? std::pow(4.0, rate / 100.0) : std::pow(2.0, rate / 100.0);
}

double ModuleSettings::Pitch() const {
  return std::pow(2.0, pitch / 100.0);
}

double ModuleSettings::Gain() const {
  return (volume + 100) / 200.0;
}

} // namespace vntts::speechd
