// SPDX-License-Identifier: MIT
#include "ui/file_filter.h"

namespace vntts::ui {

std::vector<FileFilterEntry> ParseFileFilter(std::string_view filter) {
  std::vector<std::string_view> pieces;
  for (std::size_t from = 0; from <= filter.size();) {
    const std::size_t bar = filter.find('|', from);
    if (bar == std::string_view::npos) {
      pieces.push_back(filter.substr(from));
      break;
    }
    pieces.push_back(filter.substr(from, bar - from));
    from = bar + 1;
  }
  std::vector<FileFilterEntry> entries;
  for (std::size_t i = 0; i < pieces.size() && !pieces[i].empty(); i += 2)
    entries.push_back(
        {std::string(pieces[i]), i + 1 < pieces.size() ? std::string(pieces[i + 1]) : ""});
  return entries;
}

} // namespace vntts::ui
