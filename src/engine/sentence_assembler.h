// SPDX-License-Identifier: MIT
#pragma once
// The consumer's side of one sentence: the words arrive one queue record at a time and are
// joined into one buffer in the unit format, each with a word-boundary event; the sentence end
// adds the pause and the sentence-boundary event and turns the whole into the output layout.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "audio/event_record.h"
#include "dsp/device_conversion.h"
#include "dsp/speech_scaler.h"
#include "engine/work_queue.h"

namespace vntts {

struct PlayableSentence {
  OutputLayout layout;
  std::vector<std::uint8_t> bytes;
  std::vector<EventRecord> events; // positions in frames of `bytes`
};

class SentenceAssembler {
public:
  // Appends a word record's samples (an odd trailing byte is dropped so frames stay whole) and
  // its word-boundary event, placed at the word's sound onset (dsp/sound_onset.h). Throws
  // std::bad_alloc when the buffer cannot grow.
  void AppendWord(const QueueRecord& word);

  // Closes the sentence with the pause of the sentence-end record (its byte count, in the unit
  // format), gives it the speed and pitch of `shape` and converts it. `end` may be null for a
  // sentence cut short without a pause. The assembler is empty again afterwards. Throws
  // std::bad_alloc.
  PlayableSentence Finish(const QueueRecord* end, const OutputLayout& layout,
                          const SpeechScaler& shape = {});

  bool Empty() const { return samples_.empty() && words_.empty(); }
  std::size_t Bytes() const { return samples_.size() * sizeof(std::int16_t); }
  void Clear();

private:
  struct WordMark {
    std::uint32_t unit_frame;
    std::uint32_t text_start;
    std::uint32_t text_length;
  };
  std::vector<std::int16_t> samples_;
  std::vector<WordMark> words_;
  bool has_start_ = false;
  std::uint32_t sentence_start_ = 0;
};

} // namespace vntts
