// SPDX-License-Identifier: MIT
#include "ui/auto_correct_page.h"

#include "store/auto_correct_file.h"
#include "store/file_io.h"
#include "ui/auto_correct_template.h"
#include "ui/text_file.h"

namespace vntts::ui {

using namespace auto_correct;

namespace {

constexpr std::u16string_view kAddCaption = u"&Add";
constexpr std::u16string_view kReplaceCaption = u"&Replace";
constexpr std::string_view kFilter = "AutoCorrect Files (*.crt)|*.crt|";
constexpr std::string_view kLoadTitle = "Load AutoCorrect files";
constexpr std::string_view kSaveTitle = "Save AutoCorrect data to files";

} // namespace

CAutoCorrectPage::CAutoCorrectPage(DialogView& view, Desktop& desktop, std::string data_folder)
    : view_(view), desktop_(desktop), data_folder_(std::move(data_folder)) {}

bool CAutoCorrectPage::OnInitDialog() {
  view_.InsertColumn(kList, 0, u"Replace", kReplaceColumnWidth);
  view_.InsertColumn(kList, 1, u"With", kWithColumnWidth);
  return true;
}

int CAutoCorrectPage::FindReplace(std::u16string_view replace) const {
  // Exact, case included: the engine looks a token up as it stands, so "ko" and "Ko" are
  // two pairs.
  for (int row = 0, rows = view_.RowCount(kList); row < rows; ++row)
    if (view_.Cell(kList, row, 0) == replace) return row;
  return -1;
}

void CAutoCorrectPage::OnReplaceChanged() {
  view_.SetText(kAdd, FindReplace(view_.Text(kReplace)) >= 0 ? kReplaceCaption : kAddCaption);
  changed = 0;
}

void CAutoCorrectPage::OnWithChanged() {
  if (view_.Text(kWith).empty()) {
    view_.Enable(kAdd, false);
    return;
  }
  view_.Enable(kAdd, true);
  if (FindReplace(view_.Text(kReplace)) >= 0) view_.SetText(kAdd, kReplaceCaption);
}

void CAutoCorrectPage::OnAdd() {
  const std::u16string replace = view_.Text(kReplace);
  const std::u16string with = view_.Text(kWith);
  if (view_.Text(kAdd) == kAddCaption) {
    const int row = view_.InsertRow(kList, view_.RowCount(kList), replace);
    if (row >= 0) view_.SetCell(kList, row, 1, with);
  } else if (const int row = FindReplace(replace); row >= 0) {
    view_.SetCell(kList, row, 1, with);
  }
  view_.Enable(kDelete, true);
  view_.Enable(kSave, true);
  view_.SetText(kAdd, kReplaceCaption);
  changed = 1;
}

void CAutoCorrectPage::OnItemChanged(int row) {
  if (row < 0 || row >= view_.RowCount(kList)) return;
  view_.SetText(kReplace, view_.Cell(kList, row, 0));
  view_.SetText(kWith, view_.Cell(kList, row, 1));
}

void CAutoCorrectPage::OnDelete() {
  const std::vector<int> selected = view_.SelectedRows(kList);
  if (selected.empty()) return;
  const int row = selected.front();
  view_.RemoveRow(kList, row);
  changed = 1;
  view_.SetFocus(kList);
  const int rows = view_.RowCount(kList);
  if (row < rows) view_.SetCurrentRow(kList, row);
  if (rows > 0) {
    view_.Enable(kSave, true);
  } else {
    view_.Enable(kSave, false);
    view_.Enable(kDelete, false);
    view_.SetText(kAdd, kAddCaption);
  }
}

void CAutoCorrectPage::OnLoad() {
  LoadOrSave({}, true);
}

void CAutoCorrectPage::OnSave() {
  LoadOrSave({}, false);
}

void CAutoCorrectPage::LoadOrSave(std::string path, bool load) {
  if (path.empty()) {
    const FileDialogRequest request{.filter = kFilter,
                                    .default_extension = "crt",
                                    .default_name = "AutoCrt",
                                    .title = load ? kLoadTitle : kSaveTitle,
                                    .folder = data_folder_};
    auto chosen = load ? desktop_.ChooseFileToOpen(request) : desktop_.ChooseFileToSave(request);
    if (!chosen) return;
    path = std::move(*chosen);
  }
  if (load)
    Load(path);
  else
    Save(path);
}

void CAutoCorrectPage::Load(const std::string& path) {
  std::string bytes;
  if (const StoreResult read = ReadWholeFile(path, bytes); !read) {
    desktop_.ShowMessage(read.error, "", BoxIcon::kError);
    return;
  }
  const AutoCorrectParse parsed =
      ParseAutoCorrectFile({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  if (!parsed.ok()) {
    desktop_.ShowMessage(path + ": " + parsed.error, "", BoxIcon::kError);
    return;
  }
  view_.RemoveAllRows(kList);
  // Each pair goes in as the first row, so the list shows the file in reverse order; a file
  // saved afterwards holds its pairs reversed. Kept as the page has always behaved.
  for (const AutoCorrectPair& pair : parsed.pairs)
    if (view_.InsertRow(kList, 0, InternalToWindowText(pair.replace)) == 0)
      view_.SetCell(kList, 0, 1, InternalToWindowText(pair.with));
  changed = 1;
  EnableListButtons();
}

void CAutoCorrectPage::Save(const std::string& path) {
  std::vector<AutoCorrectPair> pairs;
  for (int row = 0, rows = view_.RowCount(kList); row < rows; ++row)
    pairs.push_back({WindowTextToInternal(view_.Cell(kList, row, 0)),
                     WindowTextToInternal(view_.Cell(kList, row, 1))});
  const std::vector<std::uint8_t> bytes = SerializeAutoCorrectFile(pairs);
  const StoreResult saved = ReplaceFileAtomically(
      path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  if (!saved) {
    desktop_.ShowMessage(saved.error, "", BoxIcon::kError);
    return;
  }
  changed = 1;
}

// A loaded list can be saved and its rows deleted at once.
void CAutoCorrectPage::EnableListButtons() {
  const bool rows = view_.RowCount(kList) > 0;
  view_.Enable(kDelete, rows);
  view_.Enable(kSave, rows);
}

} // namespace vntts::ui
