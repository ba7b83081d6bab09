// SPDX-License-Identifier: MIT
#pragma once
// The Speaker window: template 143 built into widgets, its bitmaps, font, icon and tool tips,
// and every control's signal forwarded to CSpeakerDlg.
#include <QDialog>
#include <memory>

#include "ui/qt/qt_desktop.h"
#include "ui/qt/template_builder.h"
#include "ui/qt/widget_view.h"
#include "ui/speaker_dialog.h"

namespace vntts::ui {

class SpeakerWindow final : public QDialog {
public:
  // value is what the caller handed to the window; it is kept and not used.
  SpeakerWindow(SpeakerEngine& engine, std::uintptr_t value);
  ~SpeakerWindow() override;

  void SetEditText(const QString& text);
  CSpeakerDlg& controller() { return *controller_; }

  // Cancel, Escape and the window's close button all come here.
  void reject() override;

private:
  void LoadResources();
  void Connect();
  void ConnectSlider(int id);

  BuiltDialog built_;
  std::unique_ptr<WidgetView> view_;
  QtDesktop desktop_;
  std::shared_ptr<CSpeakerDlg> controller_;
  std::uintptr_t value_;
};

} // namespace vntts::ui
