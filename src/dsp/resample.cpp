// SPDX-License-Identifier: MIT
#include "dsp/resample.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>

namespace vntts {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kZeroCrossings = 16;     // per side, at the lower rate
constexpr double kPassFraction = 0.94; // cut-off as a fraction of the lower Nyquist frequency
constexpr double kKaiserBeta = 8.0;    // about 80 dB stop-band
constexpr std::uint64_t kMaxTablePhases = 2048;
constexpr int kUnitRate = 22050;

double BesselI0(double x) {
  double sum = 1.0, term = 1.0;
  const double q = x * x / 4.0;
  for (int k = 1; k < 64; ++k) {
    term *= q / (static_cast<double>(k) * k);
    sum += term;
    if (term < sum * 1e-12) break;
  }
  return sum;
}

std::int16_t Saturate(double v) {
  const double r = std::nearbyint(v);
  return static_cast<std::int16_t>(std::clamp(r, -32768.0, 32767.0));
}

} // namespace

std::vector<std::int16_t> MixToMono(std::span<const std::int16_t> interleaved, int channels) {
  if (channels <= 1) return {interleaved.begin(), interleaved.end()};
  const auto ch = static_cast<std::size_t>(channels);
  std::vector<std::int16_t> mono(interleaved.size() / ch);
  for (std::size_t i = 0; i < mono.size(); ++i) {
    long sum = 0;
    for (std::size_t c = 0; c < ch; ++c)
      sum += interleaved[i * ch + c];
    mono[i] = Saturate(static_cast<double>(sum) / static_cast<double>(channels));
  }
  return mono;
}

Resampler::Resampler(int from_rate, int to_rate) : from_rate_(from_rate), to_rate_(to_rate) {
  if (from_rate <= 0 || to_rate <= 0) throw std::invalid_argument("sample rates must be positive");
  const auto g = std::gcd(from_rate, to_rate);
  up_ = static_cast<std::uint64_t>(to_rate / g);
  down_ = static_cast<std::uint64_t>(from_rate / g);
  if (up_ == down_) return;
  const double ratio = static_cast<double>(up_) / static_cast<double>(down_);
  cutoff_ = 0.5 * std::min(1.0, ratio) * kPassFraction;
  half_width_ = kZeroCrossings * std::max(1.0, 1.0 / ratio);
  half_taps_ = static_cast<long>(std::ceil(half_width_));
  window_norm_ = BesselI0(kKaiserBeta);
  if (up_ > kMaxTablePhases) return; // odd rate pairs: weights are computed as they are needed
  const auto taps = static_cast<std::size_t>(2 * half_taps_);
  table_.resize(up_ * taps);
  for (std::uint64_t p = 0; p < up_; ++p) {
    double sum = 0;
    for (long m = -half_taps_ + 1; m <= half_taps_; ++m)
      sum += table_[p * taps + static_cast<std::size_t>(m + half_taps_ - 1)] = Weight(p, m);
    // Each phase passes DC unchanged, so a held level stays exactly where it was.
    if (sum != 0)
      for (std::size_t t = 0; t < taps; ++t)
        table_[p * taps + t] = static_cast<float>(table_[p * taps + t] / sum);
  }
}

// The filter's response at distance (phase / L - tap) input samples from the output instant.
float Resampler::Weight(std::uint64_t phase, long tap) const {
  const double u = static_cast<double>(phase) / static_cast<double>(up_) - static_cast<double>(tap);
  if (std::abs(u) >= half_width_) return 0.0f;
  const double x = 2.0 * cutoff_ * u;
  const double sinc = x == 0 ? 1.0 : std::sin(kPi * x) / (kPi * x);
  const double r = u / half_width_;
  const double window = BesselI0(kKaiserBeta * std::sqrt(1.0 - r * r)) / window_norm_;
  return static_cast<float>(2.0 * cutoff_ * sinc * window);
}

std::size_t Resampler::OutputLength(std::size_t input_length) const {
  return static_cast<std::size_t>((input_length * up_ + down_ - 1) / down_);
}

std::vector<std::int16_t> Resampler::Process(std::span<const std::int16_t> mono) const {
  if (up_ == down_) return {mono.begin(), mono.end()};
  const std::size_t out_len = OutputLength(mono.size());
  std::vector<std::int16_t> out(out_len);
  const auto n = static_cast<long>(mono.size());
  const auto taps = static_cast<std::size_t>(2 * half_taps_);
  std::vector<float> weights(taps);
  for (std::size_t k = 0; k < out_len; ++k) {
    const std::uint64_t pos = k * down_;
    const auto centre = static_cast<long>(pos / up_);
    const std::uint64_t phase = pos % up_;
    const float* w = nullptr;
    if (!table_.empty()) {
      w = &table_[phase * taps];
    } else {
      for (long m = -half_taps_ + 1; m <= half_taps_; ++m)
        weights[static_cast<std::size_t>(m + half_taps_ - 1)] = Weight(phase, m);
      w = weights.data();
    }
    const long first = centre - half_taps_ + 1;
    const long lo = std::max(0L, first);
    const long hi = std::min(n, centre + half_taps_ + 1);
    double acc = 0;
    for (long j = lo; j < hi; ++j)
      acc += static_cast<double>(w[j - first]) * mono[static_cast<std::size_t>(j)];
    out[k] = Saturate(acc);
  }
  return out;
}

std::vector<std::int16_t> ConvertToUnitFormat(std::span<const std::int16_t> interleaved, int rate,
                                              int channels) {
  auto mono = MixToMono(interleaved, channels);
  if (rate == kUnitRate || rate <= 0) return mono;
  return Resampler(rate, kUnitRate).Process(mono);
}

} // namespace vntts
