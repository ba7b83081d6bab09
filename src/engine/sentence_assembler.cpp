// SPDX-License-Identifier: MIT
#include "engine/sentence_assembler.h"

#include <algorithm>
#include <cstring>

#include "dsp/sound_onset.h"
#include "engine/event_order.h"

namespace vntts {

void SentenceAssembler::AppendWord(const QueueRecord& word) {
  const std::size_t usable = std::min<std::size_t>(word.byte_count, word.samples.size());
  const std::size_t frames = usable / sizeof(std::int16_t);
  if (!has_start_) {
    has_start_ = true;
    sentence_start_ = word.text_start;
  }
  const std::size_t at = samples_.size();
  samples_.resize(at + frames);
  if (frames) std::memcpy(samples_.data() + at, word.samples.data(), frames * sizeof(std::int16_t));
  // The word's event fires when its sound is heard, not where its samples begin.
  const std::size_t onset = SoundOnset(std::span(samples_).subspan(at, frames));
  words_.push_back({static_cast<std::uint32_t>(at + onset), word.text_start,
                    word.text_end >= word.text_start ? word.text_end - word.text_start : 0});
}

PlayableSentence SentenceAssembler::Finish(const QueueRecord* end, const OutputLayout& layout,
                                           const SpeechScaler& shape) {
  const std::size_t speech_frames = samples_.size();
  const std::size_t pause_frames = end ? end->byte_count / sizeof(std::int16_t) : 0;
  samples_.resize(speech_frames + pause_frames, 0);
  if (!shape.IsIdentity()) samples_ = shape.Process(samples_);
  const auto shaped = [&](std::size_t frame) {
    return static_cast<std::uint32_t>(std::min(shape.MapFrame(frame), samples_.size()));
  };

  PlayableSentence out;
  out.layout = layout;
  out.bytes = ConvertSentence(samples_, shaped(speech_frames), layout);
  const std::uint32_t rate = layout.samples_per_second;
  for (const WordMark& w : words_)
    InsertEventInOrder(out.events, {static_cast<std::uint32_t>(EventKind::kWordBoundary),
                                    MapFramePosition(shaped(w.unit_frame), rate),
                                    w.text_start,
                                    w.text_length,
                                    {}});
  // A sentence-end record carries the sentence's span; a sentence cut short spans its words.
  std::uint32_t start = has_start_ ? sentence_start_ : 0;
  std::uint32_t last = start;
  if (end) {
    start = end->text_start;
    last = std::max(end->text_end, start);
  } else if (!words_.empty()) {
    last = std::max(start, words_.back().text_start + words_.back().text_length);
  }
  EventRecord sentence{static_cast<std::uint32_t>(EventKind::kSentenceBoundary), 0, 0, 0, {}};
  sentence.params[0] = start;
  sentence.params[1] = last - start;
  InsertEventInOrder(out.events, sentence);
  Clear();
  return out;
}

void SentenceAssembler::Clear() {
  samples_.clear();
  words_.clear();
  has_start_ = false;
  sentence_start_ = 0;
}

} // namespace vntts
