// SPDX-License-Identifier: MIT
#include "ui/qt/definition_window.h"

#include <QAbstractButton>
#include <QTreeWidget>

#include "ui/definition_template.h"
#include "ui/qt/fonts.h"

namespace vntts::ui {

using namespace definition;

DefinitionWindow::DefinitionWindow(ToolsEngine& engine)
    : QDialog(nullptr, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint),
      built_(BuildDialog(kTemplate, *this)), desktop_(this) {
  setObjectName(QStringLiteral("vntts_definitions"));
  view_ = std::make_unique<WidgetView>(*this, built_, [](int) {});
  controller_ = std::make_unique<CDefinitionDlg>(*view_, desktop_, engine);
  const auto on_click = [this](int id, auto handler) {
    connect(static_cast<QAbstractButton*>(built_.controls.at(id)), &QAbstractButton::clicked, this,
            handler);
  };
  on_click(kAdd, [this] { controller_->OnAdd(); });
  on_click(kRemove, [this] { controller_->OnRemove(); });
  on_click(kTest, [this] { controller_->OnTest(); });
  on_click(kClose, [this] { accept(); });
  auto* list = static_cast<QTreeWidget*>(built_.controls.at(kList));
  connect(list, &QTreeWidget::itemClicked, this, [this, list](QTreeWidgetItem* item) {
    controller_->OnClick(list->indexOfTopLevelItem(item));
  });
  controller_->OnInitDialog();
  // The edit boxes and the list use the Speaker window's edit font.
  const QFont edit_font = EditFont();
  for (int id : {kReplace, kWith, kList})
    built_.controls.at(id)->setFont(edit_font);
}

} // namespace vntts::ui
