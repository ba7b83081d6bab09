// SPDX-License-Identifier: MIT
#include "dsp/speech_scaler.h"

#include <algorithm>
#include <cmath>

#include "dsp/time_scale.h"

namespace vntts {
namespace {

// The pitch ratio is the ratio of two resampling rates over this base, which keeps the
// resampler's table of filter phases small whatever the pitch.
constexpr int kPitchSteps = 1024;

double ClampedSpeed(double speed) {
  return std::isnan(speed) ? 1.0 : std::clamp(speed, kMinSpeechSpeed, kMaxSpeechSpeed);
}

int PitchSteps(double pitch) {
  if (std::isnan(pitch)) pitch = 1.0;
  return static_cast<int>(
      std::lround(std::clamp(pitch, kMinSpeechPitch, kMaxSpeechPitch) * kPitchSteps));
}

} // namespace

SpeechScaler::SpeechScaler(double speed, double pitch) {
  speed_ = ClampedSpeed(speed);
  const int steps = PitchSteps(pitch);
  pitch_ = static_cast<double>(steps) / kPitchSteps;
  // Reading `steps` samples in the time of kPitchSteps raises every frequency by the ratio.
  if (steps != kPitchSteps) resampler_ = std::make_shared<const Resampler>(steps, kPitchSteps);
}

bool SpeechScaler::Matches(double speed, double pitch) const {
  return ClampedSpeed(speed) == speed_ && PitchSteps(pitch) == std::lround(pitch_ * kPitchSteps);
}

std::size_t SpeechScaler::OutputLength(std::size_t frames) const {
  return TimeScaledLength(frames, speed_);
}

std::size_t SpeechScaler::MapFrame(std::size_t frame) const {
  return static_cast<std::size_t>(std::llround(static_cast<double>(frame) / speed_));
}

std::vector<std::int16_t> SpeechScaler::Process(std::span<const std::int16_t> in) const {
  if (!resampler_) return TimeScale(in, speed_);
  std::vector<std::int16_t> out = resampler_->Process(TimeScale(in, speed_ / pitch_));
  // Both steps round their lengths; settle on the one the speed alone gives.
  out.resize(OutputLength(in.size()), 0);
  return out;
}

} // namespace vntts
