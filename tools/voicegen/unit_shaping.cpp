#include "unit_shaping.h"

#include <algorithm>
#include <cmath>

namespace voicegen {

namespace {

// A final stop (-p, -t, -c, -ch) is unreleased in Vietnamese, but the synthesiser ends it with a
// closure gap and a faint release burst. A tail of sound that follows 40 ms of silence and
// carries under 2% of the energy is such a burst and is cut off with the gap.
std::size_t EndOfBody(const std::vector<double>& energy, std::size_t first, std::size_t last,
                      double floor) {
  constexpr std::size_t kGapBlocks = 8;
  double total = 0;
  for (std::size_t i = first; i <= last; ++i)
    total += energy[i];
  while (true) {
    std::size_t run = 0, cut = last;
    double after = 0;
    for (std::size_t i = last; i > first; --i) {
      if (energy[i] < floor) {
        if (++run >= kGapBlocks) cut = i - 1;
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

} // namespace

double GatedRms(const std::vector<std::int16_t>& pcm, std::size_t block, double gate_db) {
  if (pcm.empty() || block == 0) return 0;
  std::vector<double> energy((pcm.size() + block - 1) / block, 0.0);
  for (std::size_t i = 0; i < pcm.size(); ++i)
    energy[i / block] += static_cast<double>(pcm[i]) * pcm[i];
  const double gate =
      *std::max_element(energy.begin(), energy.end()) * std::pow(10.0, gate_db / 10);
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t b = 0; b < energy.size(); ++b) {
    if (energy[b] >= gate && energy[b] > 0) {
      sum += energy[b];
      count += std::min(block, pcm.size() - b * block);
    }
  }
  return count ? std::sqrt(sum / static_cast<double>(count)) : 0;
}

double Rms(const std::vector<std::int16_t>& pcm) {
  if (pcm.empty()) return 0;
  double sum = 0;
  for (auto s : pcm)
    sum += static_cast<double>(s) * s;
  return std::sqrt(sum / static_cast<double>(pcm.size()));
}

ShapingReport ShapeUnit(std::vector<std::int16_t>& pcm, const ShapingSettings& settings) {
  ShapingReport report;
  const auto block = static_cast<std::size_t>(settings.sample_rate * 0.005);
  const std::size_t blocks = (pcm.size() + block - 1) / block;
  std::vector<double> energy(blocks, 0.0);
  for (std::size_t i = 0; i < pcm.size(); ++i)
    energy[i / block] += static_cast<double>(pcm[i]) * pcm[i];
  const double loudest = blocks ? *std::max_element(energy.begin(), energy.end()) : 0.0;
  if (loudest <= 0) {
    report.empty = true;
    pcm.clear();
    return report;
  }
  const double floor = loudest * std::pow(10.0, settings.floor_db / 10.0);
  std::size_t first = 0;
  while (energy[first] < floor)
    ++first;
  std::size_t last = blocks - 1;
  while (energy[last] < floor)
    --last;
  last = EndOfBody(energy, first, last, floor);
  const auto margin = static_cast<std::size_t>(settings.sample_rate * settings.margin_ms / 1000);
  const std::size_t begin = first * block > margin ? first * block - margin : 0;
  const std::size_t end = std::min(pcm.size(), (last + 1) * block + margin);
  pcm.assign(pcm.begin() + static_cast<std::ptrdiff_t>(begin),
             pcm.begin() + static_cast<std::ptrdiff_t>(end));

  const double rms = GatedRms(pcm, block, settings.gate_db);
  double gain = settings.target_rms / rms;
  const auto [mn, mx] = std::minmax_element(pcm.begin(), pcm.end());
  const double peak = std::max(std::abs(static_cast<double>(*mn)), static_cast<double>(*mx));
  if (peak * gain > settings.peak_limit) {
    gain = settings.peak_limit / peak;
    report.peak_limited = true;
  }
  for (auto& s : pcm)
    s = static_cast<std::int16_t>(std::clamp(std::nearbyint(s * gain), -32768.0, 32767.0));
  report.rms = GatedRms(pcm, block, settings.gate_db);

  const auto fade = std::min(
      pcm.size() / 2, static_cast<std::size_t>(settings.sample_rate * settings.fade_ms / 1000));
  for (std::size_t i = 0; i < fade; ++i) {
    const double w = 0.5 - 0.5 * std::cos(M_PI * (static_cast<double>(i) + 0.5) / fade);
    pcm[i] = static_cast<std::int16_t>(std::nearbyint(pcm[i] * w));
    auto& tail = pcm[pcm.size() - 1 - i];
    tail = static_cast<std::int16_t>(std::nearbyint(tail * w));
  }
  return report;
}

} // namespace voicegen
