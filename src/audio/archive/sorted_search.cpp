// SPDX-License-Identifier: MIT
#include "audio/archive/sorted_search.h"

#include <algorithm>
#include <cstring>

namespace vntts {

int CompareKeyBytes(std::string_view a, std::string_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  if (n != 0) {
    // memcmp compares as unsigned char, which is the order the key file is sorted in.
    if (const int c = std::memcmp(a.data(), b.data(), n); c != 0) return c < 0 ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

SearchResult SearchSorted(std::span<const std::string> entries, std::string_view key,
                          std::size_t lo, std::size_t hi, std::vector<std::size_t>* probes) {
  hi = std::min(hi, entries.size());
  if (lo >= hi) return {false, lo};
  while (true) {
    const std::size_t d = hi - lo;
    if (d == 1) {
      if (probes) probes->push_back(lo);
      const int c = CompareKeyBytes(key, entries[lo]);
      if (c == 0) return {true, lo};
      return {false, c < 0 ? lo : lo + 1};
    }
    const std::size_t mid = lo + d / 2;
    if (probes) probes->push_back(mid);
    const int c = CompareKeyBytes(key, entries[mid]);
    if (c == 0) return {true, mid};
    if (c > 0)
      lo = mid;
    else
      hi = hi - d / 2;
  }
}

} // namespace vntts
