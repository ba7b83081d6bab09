#pragma once
// Turns a synthesised syllable into a unit: silence trimmed, loudness set, ends faded.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace voicegen {

struct ShapingSettings {
  int sample_rate = 22050;
  double margin_ms = 2;     // silence kept before the first and after the last sound
  double floor_db = -40;    // a 5 ms block quieter than the loudest by this much is silence
  double target_rms = 3000; // about -20.8 dBFS, over the blocks the gate lets through
  double gate_db = -30;     // 5 ms blocks this far below the loudest do not count for loudness
  double peak_limit = 32000;
  double fade_ms = 5;
};

struct ShapingReport {
  bool empty = false;        // nothing above the floor: the unit is left silent
  bool peak_limited = false; // the gain had to stay below the target to avoid clipping
  double rms = 0;            // RMS after shaping, before the fades
};

ShapingReport ShapeUnit(std::vector<std::int16_t>& pcm, const ShapingSettings& settings = {});

double Rms(const std::vector<std::int16_t>& pcm);
// RMS over the blocks of `block` samples whose energy is within gate_db of the loudest block,
// so that pauses inside a unit do not make it louder.
double GatedRms(const std::vector<std::int16_t>& pcm, std::size_t block, double gate_db);

} // namespace voicegen
