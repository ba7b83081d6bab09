// SPDX-License-Identifier: MIT
#pragma once
// Turns a synthesised syllable into a unit that starts and ends with its sound: offset and
// rumble filtered out, silence trimmed to a couple of milliseconds before the sound, the ends
// faded, one loudness for every unit, and the designed join silence appended after it.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace voicegen {

struct ShapingSettings {
  int sample_rate = 22050;
  double highpass_hz = 70;   // below the voice's lowest pitch; see ShapeUnit
  double floor_db = -45;     // a 1 ms block this far under the loudest one is silence
  double lead_ms = 2;        // kept before the first sound, faded in from zero
  double tail_ms = 3;        // kept after the last sound
  double fade_out_ms = 8;    // raised-cosine fade that ends where the tail ends
  double gap_ms = 8;         // digital silence after the sound: most of the join between words
  double closure_ms = 22;    // the same after a final stop, whose closure is heard as silence
  double target_rms = 4760;  // about -16.8 dBFS over the gated blocks: sentences at -18 dBFS
  double gate_db = -30;      // 5 ms blocks this far under the loudest do not count for loudness
  double peak_limit = 31000; // about -0.5 dBFS: room for the codec's overshoot
  double limiter_ms = 10;    // how far a peak's gain reduction reaches on either side
};

// A shaped unit: the sound, then `silence` samples of digital silence to append after it.
struct ShapedUnit {
  std::vector<std::int16_t> sound; // from the faded-in lead to the end of the fade out
  std::size_t fade_in = 0, fade_out = 0;
  std::size_t silence = 0;
  bool empty = false;        // nothing above the floor: the unit is left silent
  bool peak_limited = false; // peaks had to be brought down to reach the loudness
  bool final_stop = false;   // a release burst after a closure was cut off
  double rms = 0;            // gated RMS after shaping
};

ShapedUnit ShapeUnit(std::span<const std::int16_t> pcm, const ShapingSettings& settings = {});

// The pieces, exposed for their tests.

// Second-order Butterworth high-pass run forwards and then backwards: no phase shift, so the
// sound does not move in time.
void HighPassZeroPhase(std::vector<double>& x, double cutoff_hz, int sample_rate);

// Where the sound lies, in 1 ms blocks: the first and last block within floor_db of the
// loudest. A faint tail that follows 40 ms of silence and carries under 2% of the energy is
// the release burst the synthesiser puts after a final stop (Vietnamese final stops are
// unreleased) and is left out; `final_stop` tells that it was.
struct SoundBlocks {
  std::size_t first = 0, last = 0;
  bool found = false;
  bool final_stop = false;
};
SoundBlocks FindSound(std::span<const double> x, std::size_t block, double floor_db);

// Raised-cosine gains over the first / last n samples (cut to the signal).
void FadeIn(std::span<double> x, std::size_t n);
void FadeOut(std::span<double> x, std::size_t n);

// Lowers the mean of x by `by` without undoing the fades: the correction follows the envelope
// of the fades (zero at the ends), so faded ends stay at zero.
void LowerMean(std::span<double> x, double by, std::size_t fade_in, std::size_t fade_out);

// Brings samples above `limit` down to it with a smooth gain: the gain each sample needs is
// spread over `reach` samples on either side (a running minimum) and then averaged over the
// same reach, which never rises above what any sample in reach needs. A reach longer than a
// pitch period keeps the gain from following the glottal pulses. True when it changed anything.
bool LimitPeaks(std::span<double> x, double limit, std::size_t reach);

// RMS over the blocks of `block` samples whose energy is within gate_db of the loudest block,
// so that pauses inside a unit do not make it louder.
double GatedRms(std::span<const double> x, std::size_t block, double gate_db);

} // namespace voicegen
