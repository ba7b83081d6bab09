// SPDX-License-Identifier: MIT
#include "unit_shaping.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>

namespace voicegen {
namespace {

std::size_t Samples(double ms, int rate) {
  return static_cast<std::size_t>(std::lround(ms * rate / 1000.0));
}

std::vector<double> BlockEnergy(std::span<const double> x, std::size_t block) {
  std::vector<double> energy((x.size() + block - 1) / block, 0.0);
  for (std::size_t i = 0; i < x.size(); ++i)
    energy[i / block] += x[i] * x[i];
  return energy;
}

// Gain of a raised-cosine rise at sample i of n, taken at sample centres so that neither end
// is exactly 0 or 1 and a fade in and a fade out of the same length mirror each other.
double Rise(std::size_t i, std::size_t n) {
  return 0.5 -
         0.5 * std::cos(std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(n));
}

// The last block of the body: a faint tail after a silent gap is a stop's release burst.
std::size_t EndOfBody(const std::vector<double>& energy, std::size_t first, std::size_t last,
                      double floor, std::size_t gap_blocks) {
  double total = 0;
  for (std::size_t i = first; i <= last; ++i)
    total += energy[i];
  while (true) {
    std::size_t run = 0, cut = last;
    double after = 0;
    for (std::size_t i = last; i > first; --i) {
      if (energy[i] < floor) {
        if (++run >= gap_blocks) cut = i - 1;
      } else {
        if (cut != last) break;
        run = 0;
        after += energy[i];
      }
    }
    if (cut == last || after >= 0.02 * total) return last;
    while (cut > first && energy[cut] < floor)
      --cut;
    last = cut;
  }
}

// The offset of the silence around the syllable: the mean of those of the first and the last n
// samples that are quiet (what varies in them lies 40 dB under the most varied block of n), 0
// when neither is. An edge that already holds sound says nothing about the silence.
double EdgeOffset(std::span<const double> x, std::size_t n) {
  if (n == 0 || x.size() < 2 * n) return 0;
  auto mean = [&](std::size_t at) {
    double sum = 0;
    for (std::size_t i = at; i < at + n; ++i)
      sum += x[i];
    return sum / static_cast<double>(n);
  };
  auto variance = [&](std::size_t at) {
    const double m = mean(at);
    double sum = 0;
    for (std::size_t i = at; i < at + n; ++i)
      sum += (x[i] - m) * (x[i] - m);
    return sum / static_cast<double>(n);
  };
  double most = 0;
  for (std::size_t at = 0; at + n <= x.size(); at += n)
    most = std::max(most, variance(at));
  double sum = 0;
  int edges = 0;
  for (const std::size_t at : {std::size_t{0}, x.size() - n})
    if (variance(at) <= most * 1e-4) {
      sum += mean(at);
      ++edges;
    }
  return edges ? sum / edges : 0;
}

} // namespace

void HighPassZeroPhase(std::vector<double>& x, double cutoff_hz, int sample_rate) {
  // Butterworth (Q = 1/sqrt 2) high-pass biquad from the bilinear transform.
  const double w = 2 * std::numbers::pi * cutoff_hz / sample_rate;
  const double alpha = std::sin(w) / std::sqrt(2.0);
  const double c = std::cos(w);
  const double a0 = 1 + alpha;
  const double b0 = (1 + c) / 2 / a0, b1 = -(1 + c) / a0, b2 = b0;
  const double a1 = -2 * c / a0, a2 = (1 - alpha) / a0;
  auto pass = [&](auto begin, auto end) {
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    for (auto it = begin; it != end; ++it) {
      const double in = *it;
      const double out = b0 * in + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
      x2 = x1;
      x1 = in;
      y2 = y1;
      y1 = out;
      *it = out;
    }
  };
  pass(x.begin(), x.end());
  pass(x.rbegin(), x.rend());
}

SoundBlocks FindSound(std::span<const double> x, std::size_t block, double floor_db) {
  SoundBlocks s;
  if (x.empty() || block == 0) return s;
  const auto energy = BlockEnergy(x, block);
  const double loudest = *std::max_element(energy.begin(), energy.end());
  if (loudest <= 0) return s;
  const double floor = loudest * std::pow(10.0, floor_db / 10.0);
  s.found = true;
  while (energy[s.first] < floor)
    ++s.first;
  s.last = energy.size() - 1;
  while (energy[s.last] < floor)
    --s.last;
  const std::size_t body_end = EndOfBody(energy, s.first, s.last, floor, 40);
  s.final_stop = body_end != s.last;
  s.last = body_end;
  return s;
}

void FadeIn(std::span<double> x, std::size_t n) {
  n = std::min(n, x.size());
  for (std::size_t i = 0; i < n; ++i)
    x[i] *= Rise(i, n);
}

void FadeOut(std::span<double> x, std::size_t n) {
  n = std::min(n, x.size());
  for (std::size_t i = 0; i < n; ++i)
    x[x.size() - 1 - i] *= Rise(i, n);
}

void LowerMean(std::span<double> x, double by, std::size_t fade_in, std::size_t fade_out) {
  if (x.empty()) return;
  std::vector<double> envelope(x.size(), 1.0);
  FadeIn(envelope, fade_in);
  FadeOut(envelope, fade_out);
  double weight = 0;
  for (double w : envelope)
    weight += w;
  const double k = by * static_cast<double>(x.size()) / weight;
  for (std::size_t i = 0; i < x.size(); ++i)
    x[i] -= k * envelope[i];
}

bool LimitPeaks(std::span<double> x, double limit, std::size_t reach) {
  const std::size_t n = x.size();
  std::vector<double> need(n, 1.0);
  bool any = false;
  for (std::size_t i = 0; i < n; ++i)
    if (std::abs(x[i]) > limit) {
      need[i] = limit / std::abs(x[i]);
      any = true;
    }
  if (!any) return false;
  // Running minimum over [i - reach, i + reach] with a monotonic queue of indices.
  std::vector<double> least(n);
  std::deque<std::size_t> queue;
  for (std::size_t j = 0; j < n + reach; ++j) {
    if (j < n) {
      while (!queue.empty() && need[queue.back()] >= need[j])
        queue.pop_back();
      queue.push_back(j);
    }
    if (j < reach) continue;
    const std::size_t i = j - reach;
    while (queue.front() + reach < i)
      queue.pop_front();
    least[i] = need[queue.front()];
  }
  // Moving average of the minimum over the same reach, from running sums. Near the ends the
  // window is cut short; every value in it is still under the need of sample i.
  std::vector<double> sum(n + 1, 0.0);
  for (std::size_t i = 0; i < n; ++i)
    sum[i + 1] = sum[i] + least[i];
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t lo = i > reach ? i - reach : 0, hi = std::min(n, i + reach + 1);
    x[i] *= std::min((sum[hi] - sum[lo]) / static_cast<double>(hi - lo), need[i]);
  }
  return true;
}

double GatedRms(std::span<const double> x, std::size_t block, double gate_db) {
  if (x.empty() || block == 0) return 0;
  const auto energy = BlockEnergy(x, block);
  const double gate =
      *std::max_element(energy.begin(), energy.end()) * std::pow(10.0, gate_db / 10);
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t b = 0; b < energy.size(); ++b) {
    if (energy[b] >= gate && energy[b] > 0) {
      sum += energy[b];
      count += std::min(block, x.size() - b * block);
    }
  }
  return count ? std::sqrt(sum / static_cast<double>(count)) : 0;
}

ShapedUnit ShapeUnit(std::span<const std::int16_t> pcm, const ShapingSettings& settings) {
  ShapedUnit unit;
  const int rate = settings.sample_rate;
  std::vector<double> x(pcm.begin(), pcm.end());
  // An offset the silence around the syllable carries would pass for sound. It is read at the
  // edges, not over the whole: voiced sound has an offset of its own, and taking that out of the
  // silence too would lift the silence above the floor.
  const double offset = EdgeOffset(x, Samples(5, rate));
  for (double& v : x)
    v -= offset;

  const std::size_t ms = Samples(1, rate);
  const SoundBlocks sound = FindSound(x, ms, settings.floor_db);
  if (!sound.found) {
    unit.empty = true;
    return unit;
  }
  unit.final_stop = sound.final_stop;
  const std::size_t lead = Samples(settings.lead_ms, rate);
  const std::size_t begin = sound.first * ms > lead ? sound.first * ms - lead : 0;
  const std::size_t end =
      std::min(x.size(), (sound.last + 1) * ms + Samples(settings.tail_ms, rate));
  x.assign(x.begin() + static_cast<std::ptrdiff_t>(begin),
           x.begin() + static_cast<std::ptrdiff_t>(end));
  // The voice's pitch goes down to about 90 Hz. What lies under it is offset and rumble, and
  // whatever energy is left there makes the codec spend noise on the lowest band, which comes
  // back as an offset of the decoded unit; a high-pass at 70 Hz costs the lowest tones about
  // 2 dB of their fundamental. It runs on the trimmed sound, so that its ringing at an abrupt
  // start or end is faded with the ends instead of widening the unit.
  HighPassZeroPhase(x, settings.highpass_hz, rate);

  // The fade in covers the kept lead (or, for sound from the very first sample, as much of it).
  unit.fade_in = std::min(std::max(sound.first * ms - begin, lead), x.size() / 2);
  unit.fade_out = std::min(Samples(settings.fade_out_ms, rate), x.size() / 2);
  FadeIn(x, unit.fade_in);
  FadeOut(x, unit.fade_out);

  // Level, then bring the peaks down; limiting lowers the level a little, so level again.
  const std::size_t block = Samples(5, rate);
  const std::size_t reach = Samples(settings.limiter_ms, rate);
  for (int round = 0; round < 8; ++round) {
    const double rms = GatedRms(x, block, settings.gate_db);
    if (rms <= 0) break;
    const double gain = settings.target_rms / rms;
    if (round > 0 && std::abs(20 * std::log10(gain)) < 0.05) break;
    for (double& v : x)
      v *= gain;
    unit.peak_limited = LimitPeaks(x, settings.peak_limit, reach) || unit.peak_limited;
  }
  double mean = 0;
  for (double v : x)
    mean += v;
  LowerMean(x, mean / static_cast<double>(x.size()), unit.fade_in, unit.fade_out);
  unit.rms = GatedRms(x, block, settings.gate_db);

  unit.silence = Samples(sound.final_stop ? settings.closure_ms : settings.gap_ms, rate);
  unit.sound.resize(x.size());
  for (std::size_t i = 0; i < x.size(); ++i)
    unit.sound[i] = static_cast<std::int16_t>(std::clamp(std::nearbyint(x[i]), -32768.0, 32767.0));
  return unit;
}

} // namespace voicegen
