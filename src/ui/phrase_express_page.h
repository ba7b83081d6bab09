// SPDX-License-Identifier: MIT
#pragma once
// The Phrase Express page of the Tools sheet: collects the two-word phrases of a text (cut at
// line breaks, commas and full stops) into a sorted list without duplicates, and writes the
// list as a phrase store (.dic, which the engine reads as its data.dic) or as plain text. The
// list box always shows `phrases`, entry for entry.
#include <cstdint>
#include <string_view>

#include "audio/archive/sorted_name_set.h"
#include "ui/desktop.h"
#include "ui/dialog_view.h"

namespace vntts::ui {

class CPhraseExpressPage {
public:
  CPhraseExpressPage(DialogView& view, Desktop& desktop);

  bool OnInitDialog();
  void OnOpen();
  void OnSave();
  void OnLoad();
  void OnCreate();
  // Extracts the phrases of the edit box. The window's events are handled between phrases, so
  // a long text keeps the window alive; a second Add meanwhile is ignored.
  void OnAdd();
  void OnDelete();
  void OnDeleteAll();
  void OnEditChanged();
  void OnFind();

  // Asks a running Add to end after its current phrase (the window is closing).
  void RequestStop() { stopRequested = 1; }
  bool adding() const { return adding_; }
  const SortedNameSet& phrases() const { return phrases_; }

  std::int32_t stopRequested = 0;

private:
  // Puts a phrase (internal text) into `phrases` and the list at the same index; false when
  // it was there already.
  bool AddPhrase(std::string_view phrase, bool select);
  void AddPhrasesOfFile(const std::string& path);
  void EnableListButtons();

  DialogView& view_;
  Desktop& desktop_;
  // Case is kept: the engine matches a phrase as the text writes it.
  SortedNameSet phrases_{NameCase::kKept};
  bool adding_ = false;
};

} // namespace vntts::ui
