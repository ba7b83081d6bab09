// SPDX-License-Identifier: MIT
#pragma once
// The three user word stores of one data folder, as the engine holds them: the auto-correct
// table (AutoCrt.crt), the phrase store (data.dic) and the abbreviation definitions (the
// Define folder). Each implements the lookup interface the text front end and the speak path
// ask through (AutoCorrectLookup, PhraseLookup, DefinitionLookup).
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "store/phrase_store.h"

namespace vntts {

inline constexpr std::string_view kAutoCorrectFileName = "AutoCrt.crt";
inline constexpr std::string_view kPhraseStoreFileName = "data.dic";
inline constexpr std::string_view kDefinitionFolderName = "Define";

class UserWordStores {
public:
  // Opens every store of the folder. A store that cannot be read stays empty and answers no;
  // the returned texts say which and why, for the stores that are there but could not be read
  // (a store the folder does not have is left out quietly).
  std::vector<std::string> Load(const std::filesystem::path& data_folder);

  // Reads the auto-correct table again, after a tool changed the file.
  StoreResult ReloadAutoCorrect();

  std::filesystem::path AutoCorrectPath() const;
  std::filesystem::path PhraseStorePath() const;
  std::filesystem::path DefinitionFolder() const;

  AutoCorrectTable auto_correct;
  PhraseStore phrases;
  DefinitionStore definitions;

private:
  std::filesystem::path folder_;
};

} // namespace vntts
