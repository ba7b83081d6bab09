// SPDX-License-Identifier: MIT
#pragma once
// The "Tools" sheet: the Create data, Phrase Express and Auto Correct pages as tabs, in that
// order, each its template built into widgets and forwarded to its page logic; OK and Cancel
// close the sheet.
#include <QDialog>
#include <QTabWidget>
#include <memory>

#include "ui/auto_correct_page.h"
#include "ui/create_data_page.h"
#include "ui/phrase_express_page.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/template_builder.h"
#include "ui/qt/widget_view.h"

namespace vntts::ui {

// One page: a template's widgets inside the sheet, with the view and desktop its logic uses.
class SheetPage final : public QDialog {
public:
  SheetPage(const DialogTemplate& page_template, QWidget* sheet);

  WidgetView& view() { return *view_; }
  QtDesktop& desktop() { return desktop_; }
  QWidget* Control(int id) const { return built_.controls.at(id); }

private:
  BuiltDialog built_;
  std::unique_ptr<WidgetView> view_;
  QtDesktop desktop_;
};

class ToolsSheet final : public QDialog {
public:
  // data_folder: the engine's, where the Auto Correct page's file dialogs open.
  explicit ToolsSheet(const std::string& data_folder);
  // A running Add on the Phrase Express page ends before the sheet does.
  ~ToolsSheet() override;

  QTabWidget& tabs() { return *tabs_; }
  CCreateDataPage& create_data() { return *create_data_; }
  CPhraseExpressPage& phrase_express() { return *phrase_express_; }
  CAutoCorrectPage& auto_correct() { return *auto_correct_; }

  void done(int result) override;

private:
  void ConnectCreateData(SheetPage& page);
  void ConnectPhraseExpress(SheetPage& page);
  void ConnectAutoCorrect(SheetPage& page);

  QTabWidget* tabs_;
  std::unique_ptr<CCreateDataPage> create_data_;
  std::unique_ptr<CPhraseExpressPage> phrase_express_;
  std::unique_ptr<CAutoCorrectPage> auto_correct_;
};

} // namespace vntts::ui
