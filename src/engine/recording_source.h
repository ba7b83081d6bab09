// SPDX-License-Identifier: MIT
#pragma once
// Where rendered words come from: recordings by lower-case key, in the unit format (signed
// 16-bit mono 22050 Hz). The engine reads its syllable archive through this; tests give tables.
#include <cstdint>
#include <string_view>
#include <vector>

namespace vntts {

class RecordingSource {
public:
  virtual ~RecordingSource() = default;
  virtual bool Has(std::string_view key) const = 0;
  // False when there is no such unit or it cannot be decoded.
  virtual bool Fetch(std::string_view key, std::vector<std::int16_t>& samples) const = 0;
  // Gets the unit ready for a Fetch soon after, where that saves work (a cache decodes it);
  // false when there is no such unit. `scratch` is the caller's to reuse.
  virtual bool Prepare(std::string_view key, std::vector<std::int16_t>& scratch) const {
    return Fetch(key, scratch);
  }
};

} // namespace vntts
