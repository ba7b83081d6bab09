// SPDX-License-Identifier: MIT
#pragma once
// Speech into the host's hands: a UTF-8 text (speech markup or plain) becomes chunks of 16-bit
// mono 22050 Hz samples, each with the events heard within it, whose text places are byte
// offsets in the caller's own text. One chunk per sentence, break or trailing mark; the sink's
// answer false ends the synthesis at once.
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "synthesis/sentence_source.h"

namespace vntts {

struct HostEvent {
  enum class Kind { kWord, kSentence, kMark };
  Kind kind = Kind::kWord;
  std::uint64_t sample = 0;     // from the start of the synthesis
  std::uint32_t text_start = 0; // bytes of the caller's text
  std::uint32_t text_length = 0;
  std::string name; // kMark
};

struct HostSynthesisOptions {
  bool markup = true; // read a <speak> document as speech markup
  bool spell = false; // every character on its own
};

using HostChunkSink =
    std::function<bool(std::span<const std::int16_t> samples, std::span<const HostEvent> events)>;

enum class HostSynthesisResult { kDone, kStopped };

HostSynthesisResult SynthesizeForHost(std::string_view utf8, const HostSynthesisOptions& options,
                                      SentenceSource& source, const HostChunkSink& sink);

} // namespace vntts
