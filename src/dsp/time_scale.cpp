// SPDX-License-Identifier: MIT
#include "dsp/time_scale.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vntts {
namespace {

constexpr auto kSearch = static_cast<long>(kTimeScaleSearch);

// Half a frame. Above twice the pace the frames shrink toward 17 ms (still two periods of
// most voices), because each frame shows only its own stretch of input and the stretches
// between frames are skipped: shorter frames keep where sounds start and end closer to their
// place in the input.
long FrameHop(double speed) {
  constexpr auto kHop = static_cast<long>(kTimeScaleHop);
  if (speed <= 2.0) return kHop;
  return std::max(kHop * 3 / 5, std::lround(2.0 * static_cast<double>(kHop) / speed));
}

// The input as floats with silence around it, so that frames reaching past either end need
// no bounds checks. Index i of the input is at [i + margin].
// The coarse search reads every other sample; `halves` holds the even and the odd samples
// apart so that it reads them one after the other.
struct PaddedInput {
  std::vector<float> samples;
  std::vector<float> halves[2];
  long margin = 0;

  const float* At(long i) const { return samples.data() + (i + margin); }
  const float* EveryOtherAt(long i) const {
    const auto p = static_cast<std::size_t>(i + margin);
    return halves[p & 1].data() + p / 2;
  }
};

PaddedInput Pad(std::span<const std::int16_t> in, long last_centre) {
  PaddedInput p;
  p.margin = 2 * static_cast<long>(kTimeScaleHop) + kSearch + 8;
  const long body = std::max(static_cast<long>(in.size()), last_centre);
  p.samples.assign(static_cast<std::size_t>(body + 2 * p.margin), 0.0f);
  std::copy(in.begin(), in.end(), p.samples.begin() + p.margin);
  for (std::size_t i = 0; i < p.samples.size(); ++i)
    p.halves[i & 1].push_back(p.samples[i]);
  return p;
}

// Periodic Hann over one frame: two frames a hop apart sum to exactly one.
std::vector<float> HannFrame(long hop) {
  std::vector<float> w(static_cast<std::size_t>(2 * hop));
  for (std::size_t i = 0; i < w.size(); ++i)
    w[i] = static_cast<float>(
        0.5 - 0.5 * std::cos(std::numbers::pi * static_cast<double>(i) / static_cast<double>(hop)));
  return w;
}

// How well `candidate` continues `target` over `count` samples: their correlation divided by
// the candidate's energy, so that loudness alone does not win. Eight running sums let the
// compiler keep them in vector registers.
double Similarity(const float* target, const float* candidate, long count) {
  constexpr int kLanes = 8;
  float cross[kLanes] = {}, energy[kLanes] = {};
  long t = 0;
  for (; t + kLanes <= count; t += kLanes)
    for (int l = 0; l < kLanes; ++l) {
      cross[l] += target[t + l] * candidate[t + l];
      energy[l] += candidate[t + l] * candidate[t + l];
    }
  double cross_sum = 0, energy_sum = 1e-3;
  for (; t < count; ++t) {
    cross_sum += static_cast<double>(target[t]) * candidate[t];
    energy_sum += static_cast<double>(candidate[t]) * candidate[t];
  }
  for (int l = 0; l < kLanes; ++l)
    cross_sum += cross[l], energy_sum += energy[l];
  return cross_sum / std::sqrt(energy_sum);
}

// The shift in [-kSearch, kSearch] that makes the frame starting at `nominal` continue the
// waveform that starts at `target` best: every other shift on every other sample first, then
// the neighbours of the best at full resolution.
long BestShift(const PaddedInput& x, long target, long nominal, long frame) {
  const float* t = x.At(target);
  double target_energy = 0;
  for (long i = 0; i < frame; ++i)
    target_energy += static_cast<double>(t[i]) * t[i];
  if (target_energy < 1.0) return 0; // silence: nothing to line up with

  long best = 0;
  double best_score = -1e300;
  for (long d = -kSearch; d <= kSearch; d += 2) {
    const double s = Similarity(x.EveryOtherAt(target), x.EveryOtherAt(nominal + d), frame / 2);
    if (s > best_score) best_score = s, best = d;
  }
  const long coarse = best;
  best_score = -1e300;
  for (long d = std::max(-kSearch, coarse - 1); d <= std::min(kSearch, coarse + 1); ++d) {
    const double s = Similarity(t, x.At(nominal + d), frame);
    if (s > best_score) best_score = s, best = d;
  }
  return best;
}

std::int16_t ToSample(double v) {
  return static_cast<std::int16_t>(std::clamp(std::nearbyint(v), -32768.0, 32767.0));
}

} // namespace

std::size_t TimeScaledLength(std::size_t frames, double speed) {
  speed = std::clamp(speed, kMinTimeScale, kMaxTimeScale);
  return static_cast<std::size_t>(std::llround(static_cast<double>(frames) / speed));
}

std::vector<std::int16_t> TimeScale(std::span<const std::int16_t> in, double speed) {
  speed = std::clamp(speed, kMinTimeScale, kMaxTimeScale);
  if (speed == 1.0 || in.empty()) return {in.begin(), in.end()};
  const auto out_len = static_cast<long>(TimeScaledLength(in.size(), speed));
  // Frame k is centred on output sample k * hop and covers one hop either side.
  const long hop = FrameHop(speed);
  const long frames = out_len / hop + 2;
  const auto nominal = [speed, hop](long k) {
    return std::lround(static_cast<double>(k * hop) * speed);
  };
  const PaddedInput x = Pad(in, nominal(frames - 1) + kSearch + 2 * hop);
  const std::vector<float> window = HannFrame(hop);

  std::vector<double> sum(static_cast<std::size_t>(out_len), 0.0);
  std::vector<double> weight(static_cast<std::size_t>(out_len), 0.0);
  long source = 0; // centre in the input of the previous frame
  for (long k = 0; k < frames; ++k) {
    const long centre = k * hop;
    if (k > 0) {
      // The previous frame continued by one hop (centred on source + hop, so starting at
      // source) is what this frame should sound like.
      const long shift = BestShift(x, source, nominal(k) - hop, 2 * hop);
      source = nominal(k) + shift;
    }
    const float* src = x.At(source - hop);
    for (long i = 0; i < 2 * hop; ++i) {
      const long o = centre - hop + i;
      if (o < 0 || o >= out_len) continue;
      sum[static_cast<std::size_t>(o)] +=
          static_cast<double>(window[static_cast<std::size_t>(i)]) * src[i];
      weight[static_cast<std::size_t>(o)] += window[static_cast<std::size_t>(i)];
    }
  }

  std::vector<std::int16_t> out(static_cast<std::size_t>(out_len));
  for (std::size_t i = 0; i < out.size(); ++i)
    out[i] = ToSample(weight[i] > 1e-6 ? sum[i] / weight[i] : 0.0);
  return out;
}

} // namespace vntts
