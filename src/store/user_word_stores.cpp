#include "store/user_word_stores.h"

namespace vntts {

std::vector<std::string> UserWordStores::Load(const std::filesystem::path& dataFolder) {
  folder_ = dataFolder;
  std::vector<std::string> problems;
  autoCorrect.SetPairs({});
  for (const StoreResult& result :
       {autoCorrect.Load(AutoCorrectPath()), phrases.Open(PhraseStorePath()),
        definitions.LoadFolder(DefinitionFolder())})
    if (!result) problems.push_back(result.error);
  return problems;
}

StoreResult UserWordStores::ReloadAutoCorrect() {
  return autoCorrect.Load(AutoCorrectPath());
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
