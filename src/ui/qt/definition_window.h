// SPDX-License-Identifier: MIT
#pragma once
// The abbreviation editor: template 133 built into widgets and forwarded to CDefinitionDlg;
// Close ends it.
#include <QDialog>
#include <memory>

#include "ui/definition_dialog.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/template_builder.h"
#include "ui/qt/widget_view.h"

namespace vntts::ui {

class DefinitionWindow final : public QDialog {
public:
  explicit DefinitionWindow(ToolsEngine& engine);

  CDefinitionDlg& controller() { return *controller_; }

private:
  BuiltDialog built_;
  std::unique_ptr<WidgetView> view_;
  QtDesktop desktop_;
  std::unique_ptr<CDefinitionDlg> controller_;
};

} // namespace vntts::ui
