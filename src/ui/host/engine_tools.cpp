// SPDX-License-Identifier: MIT
#include "ui/host/engine_tools.h"

#include "store/file_io.h"
#include "store/user_word_stores.h"

namespace vntts::ui {

std::string EngineTools::DataFolder() {
  return engine_.data_folder().path().string();
}

void EngineTools::ReloadAutoCorrect() {
  if (const StoreResult reloaded = engine_.word_stores().ReloadAutoCorrect(); !reloaded)
    engine_.messages().Report(reloaded.error, "", MessageIcon::kError);
}

std::vector<std::string> EngineTools::ListEntries() {
  return ListFolderEntries(engine_.word_stores().DefinitionFolder());
}

std::optional<std::string> EngineTools::ReadEntry(const std::string& name) {
  const std::filesystem::path file = engine_.word_stores().DefinitionFolder() / name;
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return std::nullopt;
  std::string bytes;
  if (!ReadWholeFile(file, bytes)) return std::nullopt;
  return bytes;
}

bool EngineTools::Contains(std::string_view short_form) {
  return engine_.word_stores().definitions.Contains(short_form);
}

StoreResult EngineTools::Append(std::string_view short_form, std::string_view expansion) {
  return engine_.word_stores().definitions.Add(short_form, expansion);
}

StoreResult EngineTools::Remove(std::string_view short_form) {
  return engine_.word_stores().definitions.Remove(short_form);
}

} // namespace vntts::ui
