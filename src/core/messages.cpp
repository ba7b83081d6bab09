// SPDX-License-Identifier: MIT
#include "core/messages.h"

#include <cstdio>

namespace vntts {

void StderrMessages::Report(std::string_view text, std::string_view caption, MessageIcon) {
  if (caption.empty())
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
  else
    std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(caption.size()), caption.data(),
                 static_cast<int>(text.size()), text.data());
}

} // namespace vntts
