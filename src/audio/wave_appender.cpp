// SPDX-License-Identifier: MIT
#include "audio/wave_appender.h"

#include "audio/wave_texts.h"

namespace vntts {

int WaveAppender::Append(const std::uint8_t* bytes, std::uint32_t count, std::uint16_t channels,
                         std::uint32_t samples_per_second, std::uint16_t bits_per_sample) {
  const Format format{channels, samples_per_second, bits_per_sample};
  if (!file_ || format != format_) {
    // The first append, or another format (refused by the header check with its message).
    file_.reset();
    auto file = FileStream::Open(path_, "r+b");
    if (!file) {
      messages_.Report(wave_text::kCouldNotOpen, wave_text::kAppendCaption, MessageIcon::kWarning);
      return 1;
    }
    if (!FindAppendPoint(*file, channels, samples_per_second, bits_per_sample, messages_, point_))
      return 1;
    file_ = std::move(file);
    format_ = format;
  }
  if (WriteAppend(*file_, point_, bytes, count, messages_) != 0) {
    // The next call starts again from what the file holds.
    file_.reset();
    return 1;
  }
  return 0;
}

} // namespace vntts
