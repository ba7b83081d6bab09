// SPDX-License-Identifier: MIT
#pragma once
// The half-open binary search shared by the archive's key list and the sorted name lists of the
// tool pages. Its probe sequence is part of its contract: for an odd range the lower half still
// holds the middle entry, which costs one redundant probe; callers and tests rely on the exact
// probes and on the insertion point it reports for a miss.
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

struct SearchResult {
  bool found = false;
  // The entry's index when found; otherwise where the key would be inserted to keep order.
  std::size_t index = 0;
};

// Unsigned byte order, the order of single-byte multi-byte-aware string compares.
int CompareKeyBytes(std::string_view a, std::string_view b);

// Searches entries[lo, hi) for key. An empty range answers "not found at lo". When probes is
// given, every compared index is appended to it in order.
SearchResult SearchSorted(std::span<const std::string> entries, std::string_view key,
                          std::size_t lo, std::size_t hi,
                          std::vector<std::size_t>* probes = nullptr);

inline SearchResult SearchSorted(std::span<const std::string> entries, std::string_view key) {
  return SearchSorted(entries, key, 0, entries.size());
}

} // namespace vntts
