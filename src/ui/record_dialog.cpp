// SPDX-License-Identifier: MIT
#include "ui/record_dialog.h"

#include "ui/record_template.h"
#include "ui/record_time.h"

namespace vntts::ui {

using namespace record;

namespace {

constexpr std::u16string_view kPauseCaption = u"&Pause";
constexpr std::u16string_view kResumeCaption = u"&Resume";
// The first pair names wave files but matches "All Files (*.*)"; the filter has always read so.
constexpr std::string_view kWaveFilter = "Wave Files (*.wav)|All Files (*.*)|*.*||";

std::u16string Ascii(std::string_view text) {
  return {text.begin(), text.end()};
}

} // namespace

CRecordDlg::CRecordDlg(DialogView& view, Desktop& desktop, RecorderEngine& recorder,
                       std::string file_name)
    : view_(view), desktop_(desktop), recorder_(recorder), file_name_(std::move(file_name)) {}

bool CRecordDlg::OnInitDialog() {
  view_.Enable(kStart, true);
  view_.Enable(kPause, false);
  view_.Enable(kStop, false);
  view_.Enable(kCancel, true);
  return true;
}

void CRecordDlg::OnStart() {
  if (recording_) recorder_.Close();
  if (recorder_.Start() != 0) {
    desktop_.ShowMessage("Error start record.", "", BoxIcon::kNone);
    return;
  }
  recording_ = true;
  view_.SetText(kTime, u"0:0:0");
  view_.SetText(kPause, kPauseCaption);
  start_tick_ = desktop_.TickCount();
  elapsed_ms_ = 0;
  view_.StartTimer(kTimerId, kTimerMs);
  view_.SetRange(kIndicator, 0, 100);
  view_.SetPosition(kIndicator, 0);
  view_.Enable(kStart, false);
  view_.Enable(kPause, true);
  view_.Enable(kStop, true);
  view_.Enable(kCancel, false);
}

void CRecordDlg::OnTimer(int timer_id) {
  if (timer_id != kTimerId) return;
  const int position = view_.Position(kIndicator);
  view_.SetPosition(kIndicator, position < view_.Maximum(kIndicator) ? position + 1
                                                                     : view_.Minimum(kIndicator));
  const std::uint32_t now = desktop_.TickCount();
  elapsed_ms_ += now - start_tick_;
  start_tick_ = now;
  view_.SetText(kTime, Ascii(FormatRecordTime(elapsed_ms_)));
}

void CRecordDlg::OnPauseResume() {
  const std::u16string caption = view_.Text(kPause);
  if (caption == kPauseCaption) {
    if (recorder_.Pause() != 0) {
      desktop_.ShowMessage("Error pause record.", "", BoxIcon::kNone);
      return;
    }
    view_.SetText(kPause, kResumeCaption);
    view_.KillTimer(kTimerId);
  } else if (caption == kResumeCaption) {
    if (recorder_.Resume() != 0) {
      desktop_.ShowMessage("Error resume record.", "", BoxIcon::kNone);
      return;
    }
    start_tick_ = desktop_.TickCount();
    view_.SetText(kPause, kPauseCaption);
    view_.StartTimer(kTimerId, kTimerMs);
  }
}

void CRecordDlg::OnStop() {
  if (recorder_.Stop() != 0) {
    desktop_.ShowMessage("Error stop record.", "", BoxIcon::kNone);
    return;
  }
  view_.KillTimer(kTimerId);
  view_.SetText(kPause, kPauseCaption);
  view_.Enable(kStart, true);
  view_.Enable(kPause, false);
  view_.Enable(kStop, false);
  view_.Enable(kCancel, true);
}

void CRecordDlg::OnCancel() {
  view_.KillTimer(kTimerId);
  if (recording_) {
    recording_ = false;
    const BoxAnswer answer =
        desktop_.ShowMessage("Would you like to save record to file ?", "Question",
                             BoxIcon::kQuestion, BoxButtons::kYesNo);
    if (answer == BoxAnswer::kYes) {
      if (auto path = desktop_.ChooseFileToSave(
              {.filter = kWaveFilter, .default_extension = "wav", .default_name = "recording"})) {
        SaveAndClose(*path);
        file_name_ = std::move(*path);
      } else {
        SaveAndClose(file_name_);
      }
    } else if (!file_name_.empty()) {
      SaveAndClose(file_name_);
    } else {
      recorder_.Close();
    }
  }
  view_.EndDialog(kCancel);
}

void CRecordDlg::SaveAndClose(const std::string& path) {
  // The recorder ignores an empty name.
  if (recorder_.Save(path) == 0 && !path.empty()) saved_ = true;
  recorder_.Close();
}

} // namespace vntts::ui
