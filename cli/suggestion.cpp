// SPDX-License-Identifier: MIT
#include "suggestion.h"

#include <algorithm>
#include <vector>

namespace vntts::cli {

std::size_t EditDistance(std::string_view a, std::string_view b) {
  // Optimal string alignment: Levenshtein plus the swap of two neighbouring letters, the most
  // common slip when typing ("sya" for "say").
  const std::size_t columns = b.size() + 1;
  std::vector<std::size_t> d((a.size() + 1) * columns);
  auto at = [&](std::size_t i, std::size_t j) -> std::size_t& { return d[i * columns + j]; };
  for (std::size_t i = 0; i <= a.size(); ++i)
    at(i, 0) = i;
  for (std::size_t j = 0; j <= b.size(); ++j)
    at(0, j) = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + cost});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  }
  return at(a.size(), b.size());
}

std::string_view ClosestName(std::string_view typed, std::span<const std::string_view> names) {
  std::string_view best;
  std::size_t best_distance = 0;
  for (const std::string_view name : names) {
    const std::size_t allowed = name.size() >= 6 ? 2 : 1;
    const std::size_t distance = EditDistance(typed, name);
    if (distance == 0 || distance > allowed) continue;
    if (best.empty() || distance < best_distance) {
      best = name;
      best_distance = distance;
    }
  }
  return best;
}

} // namespace vntts::cli
