// SPDX-License-Identifier: MIT
#pragma once
// Encodes a shaped unit and checks it as it will be heard: decoded gaplessly by our own
// decoder, its last millisecond must lie under -60 dBFS and its mean within 2 steps of zero.
//
// MP3 spreads the quantisation noise of the last sounding granule over the silence after it
// (the codec's time-domain aliasing no longer cancels once the spectrum is quantised), and now
// and then that noise still stands above -60 dBFS where the unit ends, which would be heard as
// a cut. The unit is then encoded again with its silence 2 ms longer, which moves the end to
// where the noise has died away. Likewise the codec leaves an offset of a few steps in a unit
// with strong low tones (its quantisation noise in the lowest band, which the voice's pitch
// masks). That noise is drawn anew whenever the granules hold other samples, so each try also
// moves the sound one sample later, and the best try is kept.
#include <cstdint>
#include <vector>

#include "mp3_encoder.h"
#include "unit_shaping.h"

namespace voicegen {

struct CheckSettings {
  int sample_rate = 22050;
  double tail_dbfs = -60;   // the decoded unit's last millisecond must lie under this
  double max_offset = 4;    // and its mean within this many steps of zero
  double step_ms = 2;       // silence added for each further try
  double most_added_ms = 8; // up to this much in all, so that joins stay short
  int attempts = 32;        // encodings at most
};

struct EncodedUnit {
  std::vector<std::uint8_t> mp3; // empty on an error
  std::size_t samples = 0;       // what a gapless decoder gives back
  double tail_dbfs = 0;          // the decoded unit's last millisecond (before trailing zeros)
  double offset = 0;             // the decoded unit's mean, in steps
  int attempts = 0;
  bool passed = false;         // both checks held
  const char* error = nullptr; // why there is no stream
};

EncodedUnit EncodeChecked(const ShapedUnit& unit, const EncoderSettings& encoder = {},
                          const CheckSettings& check = {});

// The level in dBFS of the last millisecond before any run of zeros that ends the signal.
double TailLevelDbfs(const std::vector<std::int16_t>& pcm, int sample_rate);

} // namespace voicegen
