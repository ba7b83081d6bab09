// SPDX-License-Identifier: MIT
#pragma once
// Rate and channel conversion of 16-bit PCM. Units reach the speak path as mono 22050 Hz
// whatever their recordings were made at, and the output side lowers finished sentences to
// 11025 Hz for devices that ask for it; both go through the same band-limited resampler.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

// Averages interleaved frames of `channels` samples into one channel (rounding to nearest).
// channels <= 1 copies; a trailing partial frame is dropped.
std::vector<std::int16_t> MixToMono(std::span<const std::int16_t> interleaved, int channels);

// A windowed-sinc (Kaiser) polyphase resampler for any pair of positive rates. The ratio is
// reduced to L/M; the filter's cut-off sits just below the lower of the two Nyquist
// frequencies, so lowering the rate does not alias and raising it does not image. Samples
// outside the input count as silence. A Resampler is immutable once built and may be shared
// between threads.
class Resampler {
public:
  Resampler(int from_rate, int to_rate);

  int from_rate() const { return from_rate_; }
  int to_rate() const { return to_rate_; }

  // ceil(input_length * to / from)
  std::size_t OutputLength(std::size_t input_length) const;
  std::vector<std::int16_t> Process(std::span<const std::int16_t> mono) const;

private:
  float Weight(std::uint64_t phase, long tap) const;

  int from_rate_;
  int to_rate_;
  std::uint64_t up_ = 1;     // L
  std::uint64_t down_ = 1;   // M
  long half_taps_ = 0;       // taps on each side of the centre
  double cutoff_ = 0.5;      // cycles per input sample
  double half_width_ = 0;    // window half-width in input samples
  double window_norm_ = 1;   // the Kaiser window at its centre
  std::vector<float> table_; // up_ phases x 2*half_taps_ weights, when small enough to keep
};

// Any interleaved 16-bit PCM to the unit format: mono, 22050 Hz.
std::vector<std::int16_t> ConvertToUnitFormat(std::span<const std::int16_t> interleaved, int rate,
                                              int channels);

} // namespace vntts
