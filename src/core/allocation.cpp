// SPDX-License-Identifier: MIT
#include "core/allocation.h"

#include <cstdlib>

namespace vntts {

bool AllocationFailureRequested(std::string_view what) {
  const char* setting = std::getenv("VNTTS_FAIL_ALLOCATION");
  if (!setting) return false;
  std::string_view list(setting);
  while (!list.empty()) {
    const auto comma = list.find(',');
    const std::string_view item = list.substr(0, comma);
    if (item == what || item == "all") return true;
    if (comma == std::string_view::npos) break;
    list.remove_prefix(comma + 1);
  }
  return false;
}

} // namespace vntts
