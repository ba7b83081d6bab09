// SPDX-License-Identifier: MIT
#pragma once
// The Speaker window's logic: what each control does, written against the window's controls
// (DialogView), the desktop (Desktop) and the engine (SpeakerEngine), so that tests drive it
// with fakes. The Qt window only builds the controls and forwards their signals here.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ui/desktop.h"
#include "ui/dialog_engine.h"
#include "ui/dialog_view.h"
#include "ui/window_text.h"

namespace vntts::ui {

class CSpeakerDlg {
public:
  // Slider notification codes as trackbars send them; only the end of a move reads the slider.
  static constexpr int kLineUp = 0, kLineDown = 1, kPageUp = 2, kPageDown = 3;
  static constexpr int kThumbPosition = 4, kThumbTrack = 5, kEndScroll = 8;
  static constexpr int kDefaultVolume = 65535 / 5;
  static constexpr int kMaxRate = 5000;

  // relay carries the engine's reports to OnSpeechEvent and OnSpeechEnded on the window's
  // thread.
  CSpeakerDlg(DialogView& view, Desktop& desktop, SpeakerEngine& engine,
              std::shared_ptr<SpeechListener> relay);

  bool OnInitDialog();
  void OnSpeak();
  void OnPauseResume();
  void OnStop();
  void OnOpenFile();
  void OnHScroll(int code, int position, int slider);
  void OnEnglish();
  void OnVietnamese();
  void OnFormatChosen();
  void OnReset();
  // Cancel, or the window being closed: a speech of this window stops first.
  void OnCancel();

  // The engine's reports, on the window's thread.
  void OnSpeechEvent(std::uint32_t speech, const SpeechEvent& event);
  void OnSpeechEnded(std::uint32_t speech);
  // Selects the characters that spoken bytes [start, start + length) came from.
  void HighlightRange(std::uint32_t start, std::uint32_t length);

  bool paused() const { return paused_; }

private:
  void ShowIdle();
  void ShowCurrentFormat();

  DialogView& view_;
  Desktop& desktop_;
  SpeakerEngine& engine_;
  std::shared_ptr<SpeechListener> relay_;
  bool paused_ = false;

  // The speech this window started last, and how its bytes map back to the edit box.
  std::uint32_t speech_ = 0;
  bool speaking_ = false;
  std::optional<WindowText> spoken_;
  std::uint32_t base_ = 0;
};

} // namespace vntts::ui
