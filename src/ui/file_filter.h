// SPDX-License-Identifier: MIT
#pragma once
// File-type filters written as the dialogs have always written them: "name|pattern|" pairs,
// "Text Files (*.txt)|*.txt|All Files (*.*)|*.*|". They are kept as they stand, quirks
// included, and read here by the same rule: split at every '|', take the pieces two by two,
// stop at the first empty name.
#include <string>
#include <string_view>
#include <vector>

namespace vntts::ui {

struct FileFilterEntry {
  std::string name;    // what the type list shows
  std::string pattern; // ';'-separated wildcards; may be empty
  bool operator==(const FileFilterEntry&) const = default;
};

std::vector<FileFilterEntry> ParseFileFilter(std::string_view filter);

} // namespace vntts::ui
