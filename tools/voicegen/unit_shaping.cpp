#include "unit_shaping.h"

#include <algorithm>
#include <cmath>

namespace voicegen {

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
  const auto margin = static_cast<std::size_t>(settings.sample_rate * settings.margin_ms / 1000);
  const std::size_t begin = first * block > margin ? first * block - margin : 0;
  const std::size_t end = std::min(pcm.size(), (last + 1) * block + margin);
  pcm.assign(pcm.begin() + static_cast<std::ptrdiff_t>(begin),
             pcm.begin() + static_cast<std::ptrdiff_t>(end));

  const double rms = Rms(pcm);
  double gain = settings.target_rms / rms;
  const auto [mn, mx] = std::minmax_element(pcm.begin(), pcm.end());
  const double peak = std::max(std::abs(static_cast<double>(*mn)), static_cast<double>(*mx));
  if (peak * gain > settings.peak_limit) {
    gain = settings.peak_limit / peak;
    report.peak_limited = true;
  }
  for (auto& s : pcm)
    s = static_cast<std::int16_t>(std::clamp(std::nearbyint(s * gain), -32768.0, 32767.0));
  report.rms = Rms(pcm);

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
