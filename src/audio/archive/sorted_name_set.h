#pragma once
// A list of names kept in ascending byte order without duplicates. Names are lower-cased (the
// key rule of key_case.h) before they are compared and stored, so "B.MP3" and "b.mp3" are one
// name.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

class SortedNameSet {
public:
  // Refuses an empty name and a name already present (after lower-casing); otherwise inserts
  // the lower-cased name at its place and returns true.
  bool Insert(std::string_view name);

  std::size_t Count() const { return names_.size(); }
  const std::string& At(std::size_t index) const { return names_.at(index); }
  const std::vector<std::string>& Names() const { return names_; }
  void RemoveAll() { names_.clear(); }

  // Index of name (lower-cased) or -1.
  long Find(std::string_view name) const;

private:
  std::vector<std::string> names_;
};

} // namespace vntts
