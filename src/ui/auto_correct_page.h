// SPDX-License-Identifier: MIT
#pragma once
// The Auto Correct page of the Tools sheet: a list of Replace/With pairs edited by hand and
// loaded from or saved to AutoCorrect files (".crt"). The list is the page's only copy of the
// pairs; a file holds internal text, the window Unicode.
#include <cstdint>
#include <string>

#include "ui/desktop.h"
#include "ui/dialog_view.h"

namespace vntts::ui {

class CAutoCorrectPage {
public:
  // data_folder: the engine's data folder, where the file dialogs open.
  CAutoCorrectPage(DialogView& view, Desktop& desktop, std::string data_folder);

  bool OnInitDialog();
  void OnReplaceChanged();
  void OnWithChanged();
  void OnAdd();
  // The list's current row became `row`.
  void OnItemChanged(int row);
  void OnDelete();
  void OnLoad();
  void OnSave();
  // The shared file routine; an empty path asks the user for one.
  void LoadOrSave(std::string path, bool load);

  // 1 once the user changed the pairs (added, deleted, loaded or saved them); the sheet then
  // has the engine read its AutoCrt.crt again. Typing a new Replace text sets it back to 0.
  std::int32_t changed = 0;

private:
  // The row whose Replace equals the text exactly, or -1.
  int FindReplace(std::u16string_view replace) const;
  void Load(const std::string& path);
  void Save(const std::string& path);
  void EnableListButtons();

  DialogView& view_;
  Desktop& desktop_;
  std::string data_folder_;
};

} // namespace vntts::ui
