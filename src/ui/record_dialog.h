// SPDX-License-Identifier: MIT
#pragma once
// The Record window's logic over the engine's recorder: Start, Pause/Resume (the button's
// caption says which), Stop, and on closing the offer to save the take. A caller may preset the
// file name the take is saved under (RecordToFile does).
#include <cstdint>
#include <string>

#include "ui/desktop.h"
#include "ui/dialog_engine.h"
#include "ui/dialog_view.h"

namespace vntts::ui {

class CRecordDlg {
public:
  CRecordDlg(DialogView& view, Desktop& desktop, RecorderEngine& recorder,
             std::string file_name = {});

  bool OnInitDialog();
  void OnStart();
  void OnTimer(int timer_id);
  void OnPauseResume();
  void OnStop();
  // Cancel, or the window being closed.
  void OnCancel();

  const std::string& file_name() const { return file_name_; }
  // True when closing wrote the take to a file.
  bool saved() const { return saved_; }

private:
  void SaveAndClose(const std::string& path);

  DialogView& view_;
  Desktop& desktop_;
  RecorderEngine& recorder_;
  std::string file_name_;
  bool recording_ = false;
  bool saved_ = false;
  std::uint32_t start_tick_ = 0;
  std::uint32_t elapsed_ms_ = 0;
};

} // namespace vntts::ui
