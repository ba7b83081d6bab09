// SPDX-License-Identifier: MIT
#include "ui/speaker_dialog.h"

#include <algorithm>

#include "ui/format_choices.h"
#include "ui/speaker_template.h"
#include "ui/text_file.h"
#include "vntts/vntts.h"

namespace vntts::ui {

using namespace speaker;

namespace {

constexpr std::string_view kTextFilter = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*|";
constexpr std::string_view kPathTooLong = "Path is too long !!!";
// The current directory is read into 100 characters; a longer one reports the size it needs.
constexpr std::size_t kDirectoryBuffer = 100;
constexpr std::size_t kMaxDirectory = 256;
constexpr std::uint32_t kNoItem = 0xFFFFFFFF; // what a combo box gives for no selection
constexpr int kDefaultPitchPosition = 0x10000;

} // namespace

CSpeakerDlg::CSpeakerDlg(DialogView& view, Desktop& desktop, SpeakerEngine& engine,
                         std::shared_ptr<SpeechListener> relay)
    : view_(view), desktop_(desktop), engine_(engine), relay_(std::move(relay)) {}

bool CSpeakerDlg::OnInitDialog() {
  engine_.ResetToDefaults();
  for (const FormatChoice& choice : kFormatChoices)
    view_.AddItem(kFormat, choice.label, choice.code);
  ShowCurrentFormat();

  view_.SetRange(kVolume, 0, 65535);
  view_.SetPosition(kVolume, kDefaultVolume);
  // The whole word goes to the device: left channel at the default, right channel silent.
  engine_.SetVolume(kDefaultVolume);

  view_.SetRange(kRate, 0, kMaxRate);
  view_.SetPosition(kRate, kMaxRate);
  engine_.SetSlowness(kMaxRate - view_.Position(kRate));

  const bool pitch = engine_.PitchSupported();
  view_.SetRange(kPitch, 0, pitch ? 65535 : 0);
  const std::uint32_t current = pitch ? engine_.Pitch() : 0;
  if (current != 0) view_.SetPosition(kPitch, static_cast<int>(current & 0xFFFF));
  if (!pitch || current == 0) view_.Enable(kPitch, false);

  view_.Enable(kStop, false);
  view_.Enable(kPause, false);
  view_.Enable(kSpeak, true);
  view_.Enable(kCancel, true);
  OnVietnamese();
  return true;
}

void CSpeakerDlg::OnSpeak() {
  paused_ = false;
  view_.Enable(kSpeak, false);
  view_.Enable(kStop, true);
  view_.Enable(kPause, true);
  view_.Enable(kCancel, false);

  const TextSelection selection = view_.Selection(kEdit);
  std::u16string text = view_.Text(kEdit);
  base_ = 0;
  if (selection.start != selection.end) {
    const int from = std::min(selection.start, selection.end);
    const int to = std::max(selection.start, selection.end);
    base_ = static_cast<std::uint32_t>(from);
    text = text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  }
  // With English chosen nothing is spoken and the buttons stay as they are until Stop.
  if (!view_.IsChecked(kVietnamese)) return;
  spoken_.emplace(text);
  speaking_ = true;
  engine_.Speak(spoken_->internal(), base_, ++speech_, relay_);
}

void CSpeakerDlg::OnPauseResume() {
  if (paused_) {
    if (engine_.Resume()) {
      view_.Enable(kStop, true);
      paused_ = false;
    }
  } else if (engine_.Pause()) {
    view_.Enable(kStop, false);
    paused_ = true;
  }
}

void CSpeakerDlg::OnStop() {
  if (!engine_.Stop()) return;
  speaking_ = false;
  ShowIdle();
  view_.Enable(kVietnamese, true);
  view_.Enable(kEnglish, true);
}

void CSpeakerDlg::OnOpenFile() {
  const std::string directory = desktop_.CurrentDirectory();
  const std::size_t reported =
      directory.size() < kDirectoryBuffer ? directory.size() : directory.size() + 1;
  if (reported > kMaxDirectory) {
    desktop_.ShowMessage(kPathTooLong, "", BoxIcon::kNone);
    return;
  }
  if (const auto path =
          desktop_.ChooseFileToOpen({.filter = kTextFilter, .default_extension = "txt"})) {
    if (auto file = desktop_.ReadFile(*path); file && file->bytes.size() == file->length) {
      std::string& bytes = file->bytes;
      // The last byte gives way to the terminator, and the text ends at the first zero byte.
      if (!bytes.empty()) bytes.back() = '\0';
      bytes.resize(std::min(bytes.size(), bytes.find('\0')));
      view_.SetText(kEdit, DecodeTextFile(bytes));
    }
  }
  desktop_.SetCurrentDirectory(directory);
}

void CSpeakerDlg::OnHScroll(int code, int position, int slider) {
  const int value = code == kEndScroll ? view_.Position(slider) : position;
  const auto v = static_cast<std::uint32_t>(value) & 0xFFFF;
  if (slider == kVolume)
    engine_.SetVolume(v << 16 | v);
  else if (slider == kPitch) {
    if (engine_.PitchSupported()) engine_.SetPitch(v);
  } else if (slider == kRate)
    engine_.SetSlowness(kMaxRate - v);
}

void CSpeakerDlg::OnEnglish() {
  view_.SetChecked(kEnglish, true);
  view_.SetChecked(kVietnamese, false);
  view_.Enable(kEnglishVoice, true);
}

void CSpeakerDlg::OnVietnamese() {
  view_.SetChecked(kEnglish, false);
  view_.SetChecked(kVietnamese, true);
  view_.Enable(kEnglishVoice, false);
}

void CSpeakerDlg::OnFormatChosen() {
  engine_.SetFormatCode(view_.CurrentData(kFormat).value_or(kNoItem));
}

void CSpeakerDlg::OnReset() {
  engine_.ResetToDefaults();
  view_.SetPosition(kVolume, kDefaultVolume & 0xFFFF);
  view_.SetPosition(kRate, kMaxRate);
  view_.SetPosition(kPitch, kDefaultPitchPosition);
  ShowCurrentFormat();
}

void CSpeakerDlg::OnCancel() {
  if (speaking_) engine_.Stop();
  speaking_ = false;
  engine_.Detach();
  view_.EndDialog(kCancel);
}

void CSpeakerDlg::OnSpeechEvent(std::uint32_t speech, const SpeechEvent& event) {
  if (speech != speech_ || !speaking_) return;
  if (event.kind == VN_EVENT_WORD_BOUNDARY)
    HighlightRange(event.text_start, event.text_length);
  else if (event.kind == VN_EVENT_SENTENCE_BOUNDARY)
    HighlightRange(event.sentence_start, event.sentence_length);
}

void CSpeakerDlg::OnSpeechEnded(std::uint32_t speech) {
  if (speech != speech_ || !speaking_) return;
  speaking_ = false;
  paused_ = false;
  ShowIdle();
}

void CSpeakerDlg::HighlightRange(std::uint32_t start, std::uint32_t length) {
  if (!spoken_ || start < base_) return;
  const TextSelection units = spoken_->UnitsOf(start - base_, length);
  const auto base = static_cast<int>(base_);
  view_.Select(kEdit, {base + units.start, base + units.end});
}

void CSpeakerDlg::ShowIdle() {
  view_.Enable(kSpeak, true);
  view_.Enable(kStop, false);
  view_.Enable(kPause, false);
  view_.Enable(kCancel, true);
}

void CSpeakerDlg::ShowCurrentFormat() {
  view_.SetCurrentIndex(kFormat, FormatChoiceIndex(engine_.Format()).value_or(-1));
}

} // namespace vntts::ui
