// SPDX-License-Identifier: MIT
// The archive's key-list reader on arbitrary bytes: it must refuse or accept without reading
// out of bounds, and what it accepts must write back to a list that reads the same. The keys
// then go through the sorted set and the search, which must agree with each other.
#include <cstddef>
#include <cstdint>
#include <span>

#include "audio/archive/sorted_name_set.h"
#include "audio/archive/sorted_search.h"
#include "audio/archive/string_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto list = vntts::ParseStringList(std::span(data, size));
  if (!list) return 0;
  const auto again = vntts::ParseStringList(vntts::SerializeStringList(*list));
  if (!again || *again != *list) __builtin_trap();

  vntts::SortedNameSet set;
  for (const auto& key : *list)
    set.Insert(key);
  const auto& names = set.Names();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0 && vntts::CompareKeyBytes(names[i - 1], names[i]) >= 0) __builtin_trap();
    const auto hit = vntts::SearchSorted(names, names[i]);
    if (!hit.found || hit.index != i) __builtin_trap();
  }
  for (const auto& key : *list) {
    // A miss must report the place that keeps the order.
    const auto at = vntts::SearchSorted(names, key + '\x01');
    if (!at.found &&
        ((at.index > 0 && vntts::CompareKeyBytes(names[at.index - 1], key + '\x01') > 0) ||
         (at.index < names.size() && vntts::CompareKeyBytes(names[at.index], key + '\x01') < 0)))
      __builtin_trap();
  }
  return 0;
}
