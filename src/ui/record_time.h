// SPDX-License-Identifier: MIT
#pragma once
// The Record window's elapsed-time text: minutes (not reduced to an hour), seconds and
// milliseconds, and a space at the end.
#include <cstdint>
#include <cstdio>
#include <string>

namespace vntts::ui {

inline std::string FormatRecordTime(std::uint32_t elapsed_ms) {
  char text[40];
  std::snprintf(text, sizeof text, "%02d:%02ld:%03ld ", static_cast<int>(elapsed_ms / 60000),
                static_cast<long>(elapsed_ms / 1000 % 60), static_cast<long>(elapsed_ms % 1000));
  return text;
}

} // namespace vntts::ui
