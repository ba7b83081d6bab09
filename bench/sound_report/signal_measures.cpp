// SPDX-License-Identifier: MIT
#include "signal_measures.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace sound_report {
namespace {

std::size_t BlockOf(double rate, double seconds) {
  return std::max<std::size_t>(1, static_cast<std::size_t>(std::lround(rate * seconds)));
}

std::size_t Samples(double rate, double ms) {
  return static_cast<std::size_t>(std::lround(rate * ms / 1000));
}

// A block is silent when what varies in it is quiet: a constant offset (the 8-bit pause byte
// sits one step under the midpoint) is not sound.
bool SilentBlock(std::span<const float> block) {
  const double mean = Mean(block);
  double sum = 0;
  for (float v : block)
    sum += (v - mean) * (v - mean);
  return Dbfs(std::sqrt(sum / static_cast<double>(block.size()))) < kSilenceDbfs;
}

std::vector<bool> SilentBlocks(std::span<const float> x, std::size_t block) {
  std::vector<bool> silent((x.size() + block - 1) / block);
  for (std::size_t b = 0; b < silent.size(); ++b)
    silent[b] = SilentBlock(x.subspan(b * block, std::min(block, x.size() - b * block)));
  return silent;
}

// The longest silent run inside [lo, hi), cut to it.
Run LongestSilence(const std::vector<Run>& runs, std::size_t lo, std::size_t hi) {
  Run best{lo, lo};
  for (const Run& r : runs) {
    const Run cut{std::max(r.begin, lo), std::min(r.end, hi)};
    if (cut.end > cut.begin && cut.size() > best.size()) best = cut;
  }
  return best;
}

void Fft(std::vector<std::complex<double>>& a) {
  const std::size_t n = a.size();
  for (std::size_t i = 1, j = 0; i < n; ++i) {
    std::size_t bit = n >> 1;
    for (; j & bit; bit >>= 1)
      j ^= bit;
    j ^= bit;
    if (i < j) std::swap(a[i], a[j]);
  }
  for (std::size_t len = 2; len <= n; len <<= 1) {
    const double angle = -2 * std::numbers::pi / static_cast<double>(len);
    const std::complex<double> step(std::cos(angle), std::sin(angle));
    for (std::size_t i = 0; i < n; i += len) {
      std::complex<double> w(1);
      for (std::size_t k = 0; k < len / 2; ++k, w *= step) {
        const auto u = a[i + k];
        const auto v = a[i + k + len / 2] * w;
        a[i + k] = u + v;
        a[i + k + len / 2] = u - v;
      }
    }
  }
}

} // namespace

double Dbfs(double rms) {
  return rms > 0 ? 20 * std::log10(rms) : -200.0;
}

double RmsOf(std::span<const float> x) {
  if (x.empty()) return 0;
  double sum = 0;
  for (float v : x)
    sum += static_cast<double>(v) * v;
  return std::sqrt(sum / static_cast<double>(x.size()));
}

double Mean(std::span<const float> x) {
  if (x.empty()) return 0;
  double sum = 0;
  for (float v : x)
    sum += v;
  return sum / static_cast<double>(x.size());
}

std::vector<Run> SilentRuns(std::span<const float> x, double rate) {
  const std::size_t block = BlockOf(rate, 0.001);
  const auto silent = SilentBlocks(x, block);
  std::vector<Run> runs;
  for (std::size_t b = 0; b < silent.size();) {
    if (!silent[b]) {
      ++b;
      continue;
    }
    const std::size_t first = b;
    while (b < silent.size() && silent[b])
      ++b;
    runs.push_back({first * block, std::min(b * block, x.size())});
  }
  return runs;
}

Run SoundSpan(std::span<const float> x, double rate) {
  const std::size_t block = BlockOf(rate, 0.001);
  const auto silent = SilentBlocks(x, block);
  const auto first = std::find(silent.begin(), silent.end(), false);
  if (first == silent.end()) return {};
  const auto last = std::find(silent.rbegin(), silent.rend(), false);
  const auto begin = static_cast<std::size_t>(first - silent.begin()) * block;
  const auto end = static_cast<std::size_t>(silent.rend() - last) * block;
  return {begin, std::min(end, x.size())};
}

Rhythm MeasureRhythm(const Speech& speech) {
  Rhythm r;
  r.syllables = speech.words.size();
  const Run whole = SoundSpan(speech.samples, speech.rate);
  r.spoken_seconds = static_cast<double>(whole.size()) / speech.rate;
  const auto runs = SilentRuns(speech.samples, speech.rate);
  // Each phrase ends where the longest silence between its last word and the next phrase's
  // first word begins, and the next phrase starts where that silence ends.
  std::size_t start = whole.begin;
  const auto& w = speech.words;
  for (std::size_t i = 1; i <= w.size(); ++i) {
    if (i < w.size() && !w[i].starts_phrase) continue;
    std::size_t end = whole.end, next = whole.end;
    if (i < w.size()) {
      const Run pause =
          LongestSilence(runs, w[i - 1].position, w[i].position + Samples(speech.rate, 50));
      end = pause.size() ? pause.begin : w[i].position;
      next = pause.size() ? pause.end : w[i].position;
    }
    if (end > start) r.phrase_seconds += static_cast<double>(end - start) / speech.rate;
    start = next;
  }
  return r;
}

std::vector<double> JoinSilencesMs(const Speech& speech) {
  const auto runs = SilentRuns(speech.samples, speech.rate);
  const auto& w = speech.words;
  std::vector<double> joins;
  for (std::size_t i = 1; i < w.size(); ++i) {
    if (w[i].starts_phrase) continue;
    const std::size_t lo = (w[i - 1].position + w[i].position) / 2;
    const std::size_t hi = i + 1 < w.size() && !w[i + 1].starts_phrase
                               ? (w[i].position + w[i + 1].position) / 2
                               : w[i].position + Samples(speech.rate, 50);
    joins.push_back(1000.0 * static_cast<double>(LongestSilence(runs, lo, hi).size()) /
                    speech.rate);
  }
  return joins;
}

EventOffsets MeasureEventOffsets(const Speech& speech) {
  auto runs = SilentRuns(speech.samples, speech.rate);
  // The start of the sound counts as the end of a silence.
  if (runs.empty() || runs.front().begin != 0) runs.insert(runs.begin(), Run{0, 0});
  const std::size_t reach = Samples(speech.rate, 40);
  EventOffsets out;
  for (const auto& word : speech.words) {
    const std::size_t lo = word.position > reach ? word.position - reach : 0;
    const std::size_t hi = word.position + reach;
    bool found = false;
    double best = 0;
    for (const Run& r : runs) {
      if (r.end < lo || r.end > hi || r.end >= speech.samples.size()) continue;
      const double offset =
          (static_cast<double>(word.position) - static_cast<double>(r.end)) * 1000.0 / speech.rate;
      if (!found || std::abs(offset) < std::abs(best)) best = offset;
      found = true;
    }
    if (found)
      out.offsets_ms.push_back(best);
    else
      ++out.without_onset;
  }
  return out;
}

double BandShareDb(std::span<const float> x, double rate, double lo, double hi) {
  constexpr std::size_t kSize = 1024;
  std::vector<double> window(kSize);
  for (std::size_t i = 0; i < kSize; ++i)
    window[i] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(i) / kSize);
  double band = 0, total = 0;
  std::vector<std::complex<double>> frame(kSize);
  for (std::size_t start = 0; start + kSize <= x.size(); start += kSize / 2) {
    for (std::size_t i = 0; i < kSize; ++i)
      frame[i] = x[start + i] * window[i];
    Fft(frame);
    for (std::size_t k = 1; k <= kSize / 2; ++k) {
      const double power = std::norm(frame[k]);
      const double f = static_cast<double>(k) * rate / kSize;
      total += power;
      if (f >= lo && f < hi) band += power;
    }
  }
  return total > 0 && band > 0 ? 10 * std::log10(band / total) : -200.0;
}

double GatedLevelDbfs(std::span<const float> x, double rate) {
  const std::size_t block = BlockOf(rate, 0.005);
  std::vector<double> energy((x.size() + block - 1) / block, 0.0);
  for (std::size_t i = 0; i < x.size(); ++i)
    energy[i / block] += static_cast<double>(x[i]) * x[i];
  if (energy.empty()) return -200.0;
  const double gate = *std::max_element(energy.begin(), energy.end()) / 1000;
  double sum = 0, count = 0;
  for (std::size_t b = 0; b < energy.size(); ++b)
    if (energy[b] >= gate && energy[b] > 0) {
      sum += energy[b];
      count += static_cast<double>(std::min(block, x.size() - b * block));
    }
  return count > 0 ? Dbfs(std::sqrt(sum / count)) : -200.0;
}

Summary Summarise(std::vector<double> v) {
  Summary s;
  s.count = v.size();
  if (v.empty()) return s;
  std::sort(v.begin(), v.end());
  s.min = v.front();
  s.max = v.back();
  s.median = v[v.size() / 2];
  s.p90 = v[static_cast<std::size_t>(0.9 * static_cast<double>(v.size() - 1))];
  return s;
}

} // namespace sound_report
