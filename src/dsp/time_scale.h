// SPDX-License-Identifier: MIT
#pragma once
// Changes the pace of speech without changing its pitch, by waveform-similarity overlap-add
// (WSOLA): the output is built from Hann-windowed frames at a fixed hop; each frame is taken
// from the input near where the new pace puts it, shifted by up to about a pitch period so
// that its waveform continues the previous frame's. Frames therefore join in phase, which
// keeps the voice free of clicks and of the hollow sound plain overlap-add makes.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

// The paces the scaler accepts; others are clamped to this range. It is wider than the range
// users set (SpeechScaler) because a pitch change is a change of pace followed by resampling.
inline constexpr double kMinTimeScale = 0.25;
inline constexpr double kMaxTimeScale = 8.0;

// Frames at the unit rate (22050 Hz): 29 ms frames, half overlapped, and a search of 10 ms
// either way, which spans a whole period of voices down to 50 Hz.
inline constexpr std::size_t kTimeScaleFrame = 640;
inline constexpr std::size_t kTimeScaleHop = kTimeScaleFrame / 2;
inline constexpr std::size_t kTimeScaleSearch = 220;

// Length of the output for `frames` input frames at pace `speed` (2 = twice as fast).
std::size_t TimeScaledLength(std::size_t frames, double speed);

// Mono 16-bit samples played `speed` times as fast: TimeScaledLength(in.size(), speed) samples.
// A speed of 1 returns the input unchanged.
std::vector<std::int16_t> TimeScale(std::span<const std::int16_t> in, double speed);

} // namespace vntts
