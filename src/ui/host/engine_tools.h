// SPDX-License-Identifier: MIT
#pragma once
// The Tools sheet's and the abbreviation editor's view of one SpeechEngine: its data folder,
// its definition store (the editor's changes reach the speaking engine at once) and its speech.
#include "engine/speech_engine.h"
#include "ui/dialog_engine.h"

namespace vntts::ui {

class EngineTools final : public ToolsEngine, private DefinitionFiles {
public:
  explicit EngineTools(SpeechEngine& engine) : engine_(engine) {}

  std::string DataFolder() override;
  DefinitionFiles& Definitions() override { return *this; }
  void Speak(std::string internal_text) override { engine_.Speak(internal_text); }
  // After the Tools sheet changed the auto-correct file.
  void ReloadAutoCorrect() override;

private:
  std::vector<std::string> ListEntries() override;
  std::optional<std::string> ReadEntry(const std::string& name) override;
  bool Contains(std::string_view short_form) override;
  StoreResult Append(std::string_view short_form, std::string_view expansion) override;
  StoreResult Remove(std::string_view short_form) override;

  SpeechEngine& engine_;
};

} // namespace vntts::ui
