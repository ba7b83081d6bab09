// SPDX-License-Identifier: MIT
#include "command_messages.h"

#include <cstdio>

#include "audio/archive/archive_writer.h"
#include "audio/wave_texts.h"

namespace vntts::cli {

void CommandMessages::Report(std::string_view text, std::string_view caption, MessageIcon icon) {
  const bool completed = icon == MessageIcon::kInformation &&
                         (text == wave_text::kComplete || text == kCreateDataCompleteText);
  if (!completed) failed_ = true;
  if (completed && !verbose_) return;
  std::lock_guard lock(mutex_);
  if (caption.empty())
    std::fprintf(stderr, "vntts: %.*s\n", static_cast<int>(text.size()), text.data());
  else
    std::fprintf(stderr, "vntts: %.*s: %.*s\n", static_cast<int>(caption.size()), caption.data(),
                 static_cast<int>(text.size()), text.data());
}

} // namespace vntts::cli
