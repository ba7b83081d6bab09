// SPDX-License-Identifier: MIT
#pragma once
// The abbreviation editor ("Abbreviation table"): the definitions of the engine's Define
// folder in a two-column list, short forms shown upper-case. Add (asking before it overrides),
// Remove, a click to edit a row, and Test to hear the engine read a short form. Every change
// goes through the definition store, so the engine reads the new definitions at once.
#include <string_view>

#include "ui/desktop.h"
#include "ui/dialog_engine.h"
#include "ui/dialog_view.h"

namespace vntts::ui {

class CDefinitionDlg {
public:
  CDefinitionDlg(DialogView& view, Desktop& desktop, ToolsEngine& engine);

  bool OnInitDialog();
  void OnAdd();
  void OnRemove();
  // A click on a row.
  void OnClick(int row);
  void OnTest();

private:
  void LoadDefinitions();
  void InsertPair(std::string_view short_form, std::string_view expansion);

  DialogView& view_;
  Desktop& desktop_;
  ToolsEngine& engine_;
};

} // namespace vntts::ui
