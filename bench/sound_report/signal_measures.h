// SPDX-License-Identifier: MIT
#pragma once
// Measures of speech as a speech engineer takes them from the sound alone. One definition of
// silence serves everything: a 1 ms block whose RMS lies under -60 dBFS (42 dB under speech at
// -18 dBFS). Levels are dBFS of RMS, 0 dB for a square wave at full scale.
#include <cstddef>
#include <span>
#include <vector>

#include "speech.h"

namespace sound_report {

inline constexpr double kSilenceDbfs = -60;

double Dbfs(double rms);
double RmsOf(std::span<const float> x);

// Runs of silent 1 ms blocks, in samples: [begin, end).
struct Run {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t size() const { return end - begin; }
};
std::vector<Run> SilentRuns(std::span<const float> x, double rate);

// The first and one past the last sample of the blocks that are not silent; {0, 0} for a
// silent signal.
Run SoundSpan(std::span<const float> x, double rate);

struct Rhythm {
  std::size_t syllables = 0;
  double phrase_seconds = 0; // first to last sound of each phrase, summed
  double spoken_seconds = 0; // first to last sound of the whole text
};
Rhythm MeasureRhythm(const Speech& speech);

// The longest silence between each pair of neighbouring words of one phrase, in ms (0 where
// the sound runs through): searched from halfway between the two word marks to halfway to the
// next mark.
std::vector<double> JoinSilencesMs(const Speech& speech);

// Word mark minus the onset of the word's sound (the end of the silence nearest the mark,
// within 40 ms of it), in ms; words without a silence near their mark are counted apart.
struct EventOffsets {
  std::vector<double> offsets_ms;
  std::size_t without_onset = 0;
};
EventOffsets MeasureEventOffsets(const Speech& speech);

// Energy between lo and hi Hz as a share of all energy, in dB (Welch average of Hann-windowed
// 1024-point spectra).
double BandShareDb(std::span<const float> x, double rate, double lo, double hi);

double Mean(std::span<const float> x);

// Gated RMS in dBFS: 5 ms blocks within 30 dB of the loudest block, as the voice generator
// levels its units.
double GatedLevelDbfs(std::span<const float> x, double rate);

struct Summary {
  std::size_t count = 0;
  double min = 0, median = 0, p90 = 0, max = 0;
};
Summary Summarise(std::vector<double> values);

} // namespace sound_report
