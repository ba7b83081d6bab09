#include "audio/archive/sorted_name_set.h"

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_search.h"

namespace vntts {

bool SortedNameSet::Insert(std::string_view name) {
  if (name.empty()) return false;
  std::string lowered = LowerKey(name);
  const SearchResult at = SearchSorted(names_, lowered);
  if (at.found) return false;
  names_.insert(names_.begin() + static_cast<std::ptrdiff_t>(at.index), std::move(lowered));
  return true;
}

long SortedNameSet::Find(std::string_view name) const {
  const SearchResult at = SearchSorted(names_, LowerKey(name));
  return at.found ? static_cast<long>(at.index) : -1;
}

} // namespace vntts
