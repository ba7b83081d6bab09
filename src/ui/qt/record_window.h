// SPDX-License-Identifier: MIT
#pragma once
// The Record window: template 139 built into widgets, its bitmaps and tool tips, its timer,
// and every control forwarded to CRecordDlg.
#include <QDialog>
#include <memory>

#include "ui/qt/qt_desktop.h"
#include "ui/qt/template_builder.h"
#include "ui/qt/widget_view.h"
#include "ui/record_dialog.h"

namespace vntts::ui {

class RecordWindow final : public QDialog {
public:
  RecordWindow(RecorderEngine& recorder, std::uintptr_t value, std::string file_name);

  CRecordDlg& controller() { return *controller_; }

  // Cancel, Escape and the window's close button all come here.
  void reject() override;
  // Ends the window at once: the take is dropped and nothing is asked.
  void Abandon();

private:
  RecorderEngine& recorder_;
  BuiltDialog built_;
  std::unique_ptr<WidgetView> view_;
  QtDesktop desktop_;
  std::unique_ptr<CRecordDlg> controller_;
};

} // namespace vntts::ui
