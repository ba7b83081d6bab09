// SPDX-License-Identifier: MIT
#include "audio/archive/sorted_name_set.h"

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_search.h"

namespace vntts {

long SortedNameSet::InsertAt(std::string_view name) {
  if (name.empty()) return -1;
  std::string stored = case_ == NameCase::kLowered ? LowerKey(name) : std::string(name);
  const SearchResult at = SearchSorted(names_, stored);
  if (at.found) return -1;
  names_.insert(names_.begin() + static_cast<std::ptrdiff_t>(at.index), std::move(stored));
  return static_cast<long>(at.index);
}

void SortedNameSet::RemoveAt(std::size_t index) {
  if (index < names_.size()) names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(index));
}

long SortedNameSet::Find(std::string_view name) const {
  const SearchResult at =
      SearchSorted(names_, case_ == NameCase::kLowered ? LowerKey(name) : std::string(name));
  return at.found ? static_cast<long>(at.index) : -1;
}

} // namespace vntts
