// SPDX-License-Identifier: MIT
#include "ui/definition_dialog.h"

#include "store/definition_store.h"
#include "text/char_classes.h"
#include "ui/definition_template.h"
#include "ui/text_file.h"

namespace vntts::ui {

using namespace definition;

namespace {

// Upper case of internal text byte by byte, the mirror of its lower case: a-z and E0..FE
// except F7 move down by 0x20 (the tone bytes of VNI-Windows follow the same rule).
std::string UpperInternal(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    const auto b = static_cast<unsigned char>(c);
    if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7))
      c = static_cast<char>(b - 0x20);
  }
  return upper;
}

} // namespace

CDefinitionDlg::CDefinitionDlg(DialogView& view, Desktop& desktop, ToolsEngine& engine)
    : view_(view), desktop_(desktop), engine_(engine) {}

bool CDefinitionDlg::OnInitDialog() {
  view_.InsertColumn(kList, 0, u"Replace", kReplaceColumnWidth);
  view_.InsertColumn(kList, 1, u"With", kWithColumnWidth);
  LoadDefinitions();
  return true;
}

void CDefinitionDlg::LoadDefinitions() {
  DefinitionFiles& files = engine_.Definitions();
  const std::vector<std::string> entries = files.ListEntries();
  // The first two entries of a listing are "." and ".."; they are passed over unread, whatever
  // they are called.
  for (std::size_t i = 2; i < entries.size(); ++i) {
    const std::optional<std::string> bytes = files.ReadEntry(entries[i]);
    if (!bytes) continue;
    for (const Definition& d : ParseDefinitionLines(*bytes))
      InsertPair(d.short_form, d.expansion);
  }
}

void CDefinitionDlg::InsertPair(std::string_view short_form, std::string_view expansion) {
  const int row = view_.InsertRow(kList, view_.RowCount(kList),
                                  InternalToWindowText(UpperInternal(short_form)));
  if (row < 0) desktop_.ShowMessage("Cu chuoi", "", BoxIcon::kNone);
  if (!view_.SetCell(kList, row, 1, InternalToWindowText(expansion)))
    desktop_.ShowMessage("Can not insert this Definition!", "", BoxIcon::kNone);
}

void CDefinitionDlg::OnAdd() {
  const std::string short_form = LowerInternal(WindowTextToInternal(view_.Text(kReplace)));
  const std::string expansion = WindowTextToInternal(view_.Text(kWith));
  view_.SetText(kReplace, u"");
  view_.SetText(kWith, u"");
  DefinitionFiles& files = engine_.Definitions();
  if (files.Contains(short_form)) {
    if (desktop_.ShowMessage("Override ?", "", BoxIcon::kQuestion, BoxButtons::kYesNo) !=
        BoxAnswer::kYes)
      return;
    const std::u16string shown = InternalToWindowText(UpperInternal(short_form));
    for (int row = 0, rows = view_.RowCount(kList); row < rows; ++row)
      if (view_.Cell(kList, row, 0) == shown) {
        view_.RemoveRow(kList, row);
        break;
      }
    files.Remove(short_form);
  }
  if (const StoreResult added = files.Append(short_form, expansion); !added) {
    desktop_.ShowMessage(added.error, "", BoxIcon::kError);
    return;
  }
  InsertPair(short_form, expansion);
}

void CDefinitionDlg::OnRemove() {
  const int row = view_.CurrentRow(kList);
  if (row < 0) return;
  if (engine_.Definitions().Remove(WindowTextToInternal(view_.Cell(kList, row, 0))))
    view_.RemoveRow(kList, row);
}

void CDefinitionDlg::OnClick(int row) {
  if (row < 0 || row >= view_.RowCount(kList)) return;
  view_.SetText(kReplace, view_.Cell(kList, row, 0));
  view_.SetText(kWith, view_.Cell(kList, row, 1));
}

void CDefinitionDlg::OnTest() {
  const int row = view_.CurrentRow(kList);
  if (row < 0) {
    desktop_.ShowMessage("Please select a Definition!", "", BoxIcon::kNone);
    return;
  }
  // The engine reads the short form as a text would hold it, and so speaks its expansion.
  const std::u16string short_form = view_.Cell(kList, row, 0);
  if (!short_form.empty()) engine_.Speak(WindowTextToInternal(short_form));
}

} // namespace vntts::ui
