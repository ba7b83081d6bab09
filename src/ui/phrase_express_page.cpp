// SPDX-License-Identifier: MIT
#include "ui/phrase_express_page.h"

#include <thread>

#include "audio/archive/key_case.h"
#include "store/file_io.h"
#include "store/phrase_store.h"
#include "text/charset/charsets.h"
#include "ui/phrase_express_template.h"
#include "ui/text_file.h"

namespace vntts::ui {

using namespace phrase_express;

namespace {

constexpr std::string_view kTextFilter = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*|";
constexpr std::string_view kPhraseFilter =
    "Dictionary Files (*.dic)|*.dic|Text Files (*.txt)|*.txt|";
constexpr FileDialogRequest kTextRequest{
    .filter = kTextFilter, .default_extension = "txt", .default_name = "test"};
constexpr FileDialogRequest kPhraseRequest{
    .filter = kPhraseFilter, .default_extension = "dic", .default_name = "Data"};
// What is trimmed before a phrase, and what ends one.
constexpr std::string_view kLeading = "\r\n,. ";
constexpr std::string_view kSeparators = "\r\n,.";
// While a text file is written, the window's events are handled once per this many phrases.
constexpr std::size_t kPhrasesPerEventCheck = 1000;

bool IsDictionaryPath(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const std::size_t slash = path.rfind('/');
  if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash))
    return false;
  return LowerKey(path.substr(dot + 1)) == "dic";
}

} // namespace

CPhraseExpressPage::CPhraseExpressPage(DialogView& view, Desktop& desktop)
    : view_(view), desktop_(desktop) {}

bool CPhraseExpressPage::OnInitDialog() {
  view_.SetTextLimit(kEdit, kTextLimit);
  return true;
}

void CPhraseExpressPage::OnOpen() {
  const auto path = desktop_.ChooseFileToOpen(kTextRequest);
  if (!path) return;
  std::string bytes;
  if (const StoreResult read = ReadWholeFile(*path, bytes); !read) {
    desktop_.ShowMessage(read.error, "", BoxIcon::kError);
    return;
  }
  view_.SetText(kEdit, DecodeTextFile(bytes));
}

void CPhraseExpressPage::OnSave() {
  const auto path = desktop_.ChooseFileToSave(kTextRequest);
  if (!path) return;
  if (const StoreResult saved = ReplaceFileAtomically(*path, WindowTextToUtf8(view_.Text(kEdit)));
      !saved)
    desktop_.ShowMessage(saved.error, "", BoxIcon::kError);
}

void CPhraseExpressPage::OnLoad() {
  const auto path = desktop_.ChooseFileToOpen(kPhraseRequest);
  if (path) AddPhrasesOfFile(*path);
  view_.Enable(kDelete, true);
  view_.Enable(kDeleteAll, true);
  view_.Enable(kCreate, view_.RowCount(kList) > 0);
}

void CPhraseExpressPage::AddPhrasesOfFile(const std::string& path) {
  std::vector<std::string> phrases;
  if (IsDictionaryPath(path)) {
    PhraseStore store;
    if (const StoreResult opened = store.Open(path); !opened) {
      desktop_.ShowMessage(opened.error, "", BoxIcon::kError);
      return;
    }
    phrases = store.AllPhrases();
  } else {
    std::string bytes;
    if (const StoreResult read = ReadWholeFile(path, bytes); !read) {
      desktop_.ShowMessage(read.error, "", BoxIcon::kError);
      return;
    }
    // One phrase a line, as Create writes them.
    phrases = ExtractTwoWordPhrases(WindowTextToInternal(DecodeTextFile(bytes)));
  }
  for (const std::string& phrase : phrases)
    if (auto normalized = NormalizeTwoWordPhrase(phrase)) AddPhrase(*normalized, false);
}

void CPhraseExpressPage::OnCreate() {
  const auto path = desktop_.ChooseFileToSave(kPhraseRequest);
  if (!path) return;
  StoreResult written;
  if (IsDictionaryPath(*path)) {
    desktop_.ProcessPendingEvents();
    written = PhraseStore::Save(*path, phrases_.Names());
  } else {
    std::string text;
    for (std::size_t i = 0; i < phrases_.Count(); ++i) {
      if (i % kPhrasesPerEventCheck == 0) desktop_.ProcessPendingEvents();
      text.append(InternalToUtf8(phrases_.At(i))).append("\r\n");
    }
    written = ReplaceFileAtomically(*path, text);
  }
  if (!written) desktop_.ShowMessage(written.error, "", BoxIcon::kError);
}

void CPhraseExpressPage::OnAdd() {
  if (adding_) return;
  adding_ = true;
  stopRequested = 0;
  const std::string text = WindowTextToInternal(view_.Text(kEdit));
  std::string_view rest = text;
  bool last = false; // no separator was left: this piece is the text's last
  while (!rest.empty() && !last && stopRequested == 0) {
    desktop_.ProcessPendingEvents();
    rest.remove_prefix(std::min(rest.find_first_not_of(kLeading), rest.size()));
    const std::size_t end = rest.find_first_of(kSeparators);
    last = end == std::string_view::npos;
    if (auto phrase = NormalizeTwoWordPhrase(rest.substr(0, end))) AddPhrase(*phrase, true);
    if (!last) rest.remove_prefix(end + 1);
    std::this_thread::yield();
  }
  desktop_.ShowMessage("Create Phrase Express Complete.", "", BoxIcon::kInformation);
  EnableListButtons();
  adding_ = false;
}

bool CPhraseExpressPage::AddPhrase(std::string_view phrase, bool select) {
  const long index = phrases_.InsertAt(phrase);
  if (index < 0) return false;
  const int row = static_cast<int>(index);
  view_.InsertRow(kList, row, InternalToWindowText(phrase));
  if (select) view_.SetCurrentRow(kList, row);
  return true;
}

void CPhraseExpressPage::OnDelete() {
  const std::vector<int> selected = view_.SelectedRows(kList);
  for (auto row = selected.rbegin(); row != selected.rend(); ++row) {
    view_.RemoveRow(kList, *row);
    phrases_.RemoveAt(static_cast<std::size_t>(*row));
  }
  view_.SetFocus(kEdit);
  if (view_.RowCount(kList) > 1) view_.SetCurrentRow(kList, 1);
  EnableListButtons();
}

void CPhraseExpressPage::OnDeleteAll() {
  view_.RemoveAllRows(kList);
  phrases_.RemoveAll();
  view_.Enable(kDelete, false);
  view_.Enable(kDeleteAll, false);
  view_.Enable(kCreate, false);
}

void CPhraseExpressPage::OnEditChanged() {
  const bool text = !view_.Text(kEdit).empty();
  view_.Enable(kAdd, text);
  view_.Enable(kSave, text);
}

void CPhraseExpressPage::OnFind() {
  const std::u16string wanted = view_.Text(kEdit);
  const std::string internal = WindowTextToInternal(wanted);
  long found = phrases_.Find(internal);
  // A phrase typed in another case is found too.
  const std::string lowered = LowerKey(internal);
  for (std::size_t i = 0; found < 0 && i < phrases_.Count(); ++i)
    if (LowerKey(phrases_.At(i)) == lowered) found = static_cast<long>(i);
  if (found < 0) {
    desktop_.ShowMessage("Khong tim thay tu  \"" + WindowTextToUtf8(wanted) + "\"", "",
                         BoxIcon::kNone);
    return;
  }
  view_.SetCurrentRow(kList, static_cast<int>(found));
}

void CPhraseExpressPage::EnableListButtons() {
  const bool rows = view_.RowCount(kList) > 0;
  view_.Enable(kDelete, rows);
  view_.Enable(kDeleteAll, rows);
  view_.Enable(kCreate, rows);
}

} // namespace vntts::ui
