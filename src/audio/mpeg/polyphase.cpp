// SPDX-License-Identifier: MIT
#include "audio/mpeg/polyphase.h"

#include <cstring>

namespace vntts::mpeg {

void Polyphase::Reset() {
  std::memset(&history_, 0, sizeof history_);
}

} // namespace vntts::mpeg
