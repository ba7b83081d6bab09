// SPDX-License-Identifier: MIT
#pragma once
// Every unit of a voice, decoded as the speak path fetches it: the silence it carries at each
// end, its offset from zero, its loudness and whether its sound is cut off instead of fading.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace sound_report {

struct UnitFigures {
  std::vector<double> lead_ms, tail_ms, dc_lsb, level_db, seconds;
  std::size_t cut_tails = 0; // the sound stops above -60 dBFS: the last 1 ms before it is loud
  std::vector<std::string> cut_examples; // the first few of them, UTF-8, with their level
};

std::optional<UnitFigures> MeasureUnits(const std::filesystem::path& voice_folder);

} // namespace sound_report
