// SPDX-License-Identifier: MIT
#pragma once
// Speed and pitch of speech at the unit rate, for a sentence at a time. Speed changes the pace
// and keeps the pitch (TimeScale); pitch changes the pitch and keeps the pace: the sentence is
// first scaled in time by pitch / speed and then resampled by the pitch ratio, which moves
// every frequency by that ratio and brings the length to the one the speed asks for.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "dsp/resample.h"

namespace vntts {

// What users may set: half to four times the recorded pace, an octave down or up.
inline constexpr double kMinSpeechSpeed = 0.5;
inline constexpr double kMaxSpeechSpeed = 4.0;
inline constexpr double kMinSpeechPitch = 0.5;
inline constexpr double kMaxSpeechPitch = 2.0;

class SpeechScaler {
public:
  SpeechScaler() = default;
  // Both factors are clamped to their ranges; the pitch is kept to 1/1024 steps.
  SpeechScaler(double speed, double pitch);

  double speed() const { return speed_; }
  double pitch() const { return pitch_; }
  bool IsIdentity() const { return speed_ == 1.0 && pitch_ == 1.0; }
  // Whether SpeechScaler(speed, pitch) would do what this one does (cheap: a caller keeps
  // one scaler and builds another only when the factors change).
  bool Matches(double speed, double pitch) const;

  // Length of the output for `frames` input frames.
  std::size_t OutputLength(std::size_t frames) const;
  // Where the sound at input frame `frame` is heard in the output.
  std::size_t MapFrame(std::size_t frame) const;

  std::vector<std::int16_t> Process(std::span<const std::int16_t> in) const;

private:
  double speed_ = 1.0;
  double pitch_ = 1.0;
  std::shared_ptr<const Resampler> resampler_; // set when the pitch is not 1
};

} // namespace vntts
