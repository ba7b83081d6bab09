// SPDX-License-Identifier: MIT
#pragma once
// The syllable archive as the word renderer sees it: recordings by lower-case key, decoded to
// the unit format. Shared by the engine and by `vntts words`, so that both decide alike which
// words are said and which are spelled.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "audio/archive/unit_archive.h"
#include "engine/recording_source.h"

namespace vntts {

class ArchiveUnits final : public RecordingSource {
public:
  ArchiveUnits(std::string data_path, Messages& messages)
      : archive_(std::move(data_path), messages) {}
  bool Has(std::string_view key) const override { return archive_.FindUnit(key) >= 0; }
  bool Fetch(std::string_view key, std::vector<std::int16_t>& samples) const override {
    return archive_.GetUnit(key, samples);
  }

private:
  UnitArchive archive_;
};

} // namespace vntts
