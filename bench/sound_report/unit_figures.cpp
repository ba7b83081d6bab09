// SPDX-License-Identifier: MIT
#include "unit_figures.h"

#include <cmath>
#include <cstdio>

#include "audio/archive/unit_archive.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "signal_measures.h"
#include "text/charset/charsets.h"

namespace sound_report {
namespace {

class QuietMessages final : public vntts::Messages {
public:
  void Report(std::string_view, std::string_view, vntts::MessageIcon) override {}
};

constexpr double kRate = 22050;
constexpr std::size_t kMs = 22; // one block of 1 ms at the unit rate

// The level of the last millisecond before the trailing zeros.
double TailDbfs(const std::vector<float>& x) {
  std::size_t last = x.size();
  while (last > 0 && x[last - 1] == 0.0f)
    --last;
  if (last < kMs) return -200;
  return Dbfs(RmsOf(std::span(x).subspan(last - kMs, kMs)));
}

} // namespace

std::optional<UnitFigures> MeasureUnits(const std::filesystem::path& voice_folder) {
  QuietMessages messages;
  vntts::DataFolder folder(voice_folder);
  vntts::UnitArchive archive(folder.FilePath("main_dic.dat"), messages);
  if (!archive.IsOpen() || archive.Keys().empty()) return std::nullopt;
  UnitFigures f;
  std::vector<std::int16_t> pcm;
  for (const auto& key : archive.Keys()) {
    if (!archive.GetUnit(key, pcm) || pcm.empty()) continue;
    std::vector<float> x(pcm.size());
    for (std::size_t i = 0; i < pcm.size(); ++i)
      x[i] = static_cast<float>(pcm[i]) / 32768.0f;
    const Run sound = SoundSpan(x, kRate);
    f.lead_ms.push_back(1000.0 * static_cast<double>(sound.begin) / kRate);
    f.tail_ms.push_back(1000.0 * static_cast<double>(x.size() - sound.end) / kRate);
    f.dc_lsb.push_back(std::abs(Mean(x)) * 32768.0);
    f.level_db.push_back(GatedLevelDbfs(x, kRate));
    f.seconds.push_back(static_cast<double>(x.size()) / kRate);
    if (const double tail = TailDbfs(x); tail >= kSilenceDbfs && f.cut_tails++ < 5) {
      char level[32];
      std::snprintf(level, sizeof level, " (%.1f dBFS)", tail);
      f.cut_examples.push_back(vntts::InternalToUtf8(key) + level);
    }
  }
  return f;
}

} // namespace sound_report
