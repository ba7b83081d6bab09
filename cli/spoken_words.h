// SPDX-License-Identifier: MIT
#pragma once
// The words the engine speaks for a text, as `vntts words` and `vntts say -x` print them: one
// sentence a line, lower case, UTF-8. The word stores and the voice of a data folder take part
// as they do when speaking (a word the voice lacks may be spelled instead).
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>

#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/archive_units.h"
#include "engine/word_renderer.h"
#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "text/sentence_parser.h"

namespace vntts::cli {

class SpokenWords {
public:
  // Without a folder the parser uses no stores and no voice.
  SpokenWords(const std::optional<std::filesystem::path>& folder, Messages& messages);

  // Writes the words of internal text to out; marks follows each word with '/' and the class of
  // the piece it was read from. False when out could not be written.
  bool Write(std::string_view internal, bool marks, std::FILE* out) const;

private:
  std::optional<DataFolder> folder_;
  DefinitionStore definitions_;
  AutoCorrectTable auto_correct_;
  std::optional<ArchiveUnits> units_;
  std::optional<WordRenderer> renderer_;
  FrontEndStores stores_;
};

} // namespace vntts::cli
