// SPDX-License-Identifier: MIT
#pragma once
// What the report measures: one text as one engine spoke it.
#include <cstddef>
#include <vector>

namespace sound_report {

struct Speech {
  double rate = 22050;
  std::vector<float> samples; // mono, full scale 1.0 (the left channel of stereo output)
  struct Word {
    std::size_t position = 0;  // the sample the engine says the word starts at
    bool starts_phrase = true; // first word, or punctuation stands between it and the last
  };
  std::vector<Word> words;
  std::size_t dropped_words = 0; // words whose mark could not be placed in the sound
};

} // namespace sound_report
