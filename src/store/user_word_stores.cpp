// SPDX-License-Identifier: MIT
#include "store/user_word_stores.h"

namespace vntts {

namespace {

// Nothing at all at that path (a store the folder does not have is no problem).
bool Absent(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::symlink_status(path, error).type() ==
         std::filesystem::file_type::not_found;
}

} // namespace

std::vector<std::string> UserWordStores::Load(const std::filesystem::path& data_folder) {
  folder_ = data_folder;
  std::vector<std::string> problems;
  auto_correct.SetPairs({});
  const std::pair<StoreResult, std::filesystem::path> results[] = {
      {auto_correct.Load(AutoCorrectPath()), AutoCorrectPath()},
      {phrases.Open(PhraseStorePath()), PhraseStorePath()},
      {definitions.LoadFolder(DefinitionFolder()), DefinitionFolder()}};
  for (const auto& [result, path] : results)
    if (!result && !Absent(path)) problems.push_back(result.error);
  return problems;
}

StoreResult UserWordStores::ReloadAutoCorrect() {
  return auto_correct.Load(AutoCorrectPath());
}

std::filesystem::path UserWordStores::AutoCorrectPath() const {
  return folder_ / kAutoCorrectFileName;
}

std::filesystem::path UserWordStores::PhraseStorePath() const {
  return folder_ / kPhraseStoreFileName;
}

std::filesystem::path UserWordStores::DefinitionFolder() const {
  return folder_ / kDefinitionFolderName;
}

} // namespace vntts
