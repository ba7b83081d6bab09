// SPDX-License-Identifier: MIT
#include "ui/create_data_page.h"

#include <cstdlib>

#include "audio/archive/archive_writer.h"
#include "audio/archive/mapped_file.h"
#include "core/messages.h"
#include "ui/create_data_template.h"
#include "ui/text_file.h"

namespace vntts::ui {

using namespace create_data;

namespace {

constexpr std::string_view kDataFilter = "Data Files (*.dat)|*.dat|All Files (*.*)|*.*|";
constexpr std::string_view kMp3Filter = "Mp3 files(*.mp3)|*.mp3|All files(*.*)|*.*|";
constexpr std::string_view kMp3 = ".mp3";

// The archive writer's reports, as message boxes of the page.
class DesktopMessages final : public Messages {
public:
  explicit DesktopMessages(Desktop& desktop) : desktop_(desktop) {}
  void Report(std::string_view text, std::string_view caption, MessageIcon icon) override {
    desktop_.ShowMessage(text, caption,
                         icon == MessageIcon::kInformation ? BoxIcon::kInformation
                         : icon == MessageIcon::kWarning   ? BoxIcon::kWarning
                                                           : BoxIcon::kError);
  }

private:
  Desktop& desktop_;
};

std::u16string Ascii(std::string_view text) {
  return {text.begin(), text.end()};
}

} // namespace

CCreateDataPage::CCreateDataPage(DialogView& view, Desktop& desktop, std::string home)
    : view_(view), desktop_(desktop), tree_(view, kTree), home_(std::move(home)) {}

bool CCreateDataPage::OnInitDialog() {
  tree_.Fill(home_);
  for (std::uint32_t i = 0; i < std::size(kRecordingTypeNames); ++i)
    view_.AddItem(kType, Ascii(kRecordingTypeNames[i]), i);
  view_.SetCurrentIndex(kType, 0);
  view_.SetText(kTotal, Ascii(TotalFilesText(0)));
  return true;
}

void CCreateDataPage::OnTreeExpanding(int item) {
  tree_.OnExpanding(item);
}

void CCreateDataPage::FillFileList() {
  if (const std::string folder = tree_.SelectedPath(); !folder.empty()) {
    // The listing goes by the folder's full path, so the process's current directory, which
    // belongs to the host program, is left alone.
    folderPath = folder;
    listed_.clear();
    view_.RemoveAllRows(kList);
    const std::vector<ListedRecording> files =
        ListRecordings(folderPath, view_.CurrentIndex(kType));
    for (const ListedRecording& file : files) {
      std::u16string shown = InternalToWindowText(file.name);
      view_.InsertRow(kList, view_.RowCount(kList), shown);
      listed_.emplace(std::move(shown), file);
    }
    view_.SetText(kTotal, Ascii(TotalFilesText(files.size())));
  }
  view_.Enable(kCreate, view_.RowCount(kList) > 0);
}

std::vector<ListedRecording> CCreateDataPage::ListedEntries() const {
  std::vector<ListedRecording> entries;
  for (int row = 0, rows = view_.RowCount(kList); row < rows; ++row) {
    const std::u16string text = view_.Cell(kList, row, 0);
    if (const auto found = listed_.find(text); found != listed_.end())
      entries.push_back(found->second);
    else
      entries.push_back({WindowTextToInternal(text), folderPath + WindowTextToUtf8(text)});
  }
  return entries;
}

void CCreateDataPage::OnCreateData() {
  if (view_.RowCount(kList) == 0) {
    desktop_.ShowMessage("No file in listbox", "", BoxIcon::kNone);
    return;
  }
  // The chosen file must already exist; the tool has always asked for one.
  const auto path = desktop_.ChooseFileToSave({.filter = kDataFilter,
                                               .default_extension = "dat",
                                               .default_name = "Main_dic",
                                               .file_must_exist = true});
  if (!path) return;
  view_.Repaint();

  const std::vector<ListedRecording> entries = ListedEntries();
  // Required of this tool: a recording it cannot map (an empty file cannot be mapped) ends the
  // process at once, the recordings before it written, before any report is made. Each
  // recording is tried just before the writer takes it.
  const auto end_unless_mappable = [&entries](std::size_t i) {
    if (i < entries.size() && !MappedFile(entries[i].file).Mapped()) std::_Exit(1);
  };
  ArchiveWriteOptions options;
  options.report_completion = false;
  options.progress = [this, &end_unless_mappable](std::size_t done, std::size_t) {
    view_.SetCurrentRow(kList, static_cast<int>(done) - 1);
    end_unless_mappable(done);
  };
  end_unless_mappable(0);
  DesktopMessages messages(desktop_);
  if (WriteArchive(entries, *path, messages, options).ok)
    desktop_.ShowMessage("Create data complete.", "", BoxIcon::kInformation);
}

void CCreateDataPage::OnAddFolder() {
  const auto folder = desktop_.ChooseFolder("Please select a folder");
  if (!folder || folder->empty()) return;
  for (const ListedRecording& file : ListRecordings(*folder, 0))
    fileNames.Insert(std::string_view(file.name).substr(0, file.name.size() - kMp3.size()));
  ShowFileNames(true);
}

void CCreateDataPage::OnAddFiles() {
  const std::vector<std::string> paths =
      desktop_.ChooseFilesToOpen({.filter = kMp3Filter, .default_extension = "mp3"});
  if (paths.empty()) return;
  for (const std::string& path : paths)
    fileNames.Insert(FileNameToInternal(path));
  ShowFileNames(false);
}

void CCreateDataPage::ShowFileNames(bool empty_first) {
  if (empty_first) view_.RemoveAllRows(kList);
  for (const std::string& name : fileNames.Names())
    view_.InsertRow(kList, view_.RowCount(kList), InternalToWindowText(name) + Ascii(kMp3));
}

} // namespace vntts::ui
