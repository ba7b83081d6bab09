// SPDX-License-Identifier: MIT
#include "ui/qt/record_window.h"

#include <QAbstractButton>

#include "ui/qt/bitmap_button.h"
#include "ui/record_template.h"
#include "ui/resources.h"

namespace vntts::ui {

using namespace record;

namespace {

struct ButtonResources {
  int id;
  const BitmapSet& bitmaps;
  int tip; // 0: none
};

const ButtonResources kButtons[] = {
    {kStart, kRecordBitmaps, 32810},
    {kCancel, kCancelBitmaps, 0},
    {kStop, kStopBitmaps, 32825},
    {kPause, kPauseBitmaps, 32826},
};

} // namespace

RecordWindow::RecordWindow(RecorderEngine& recorder, std::uintptr_t /*value*/,
                           std::string file_name)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      recorder_(recorder), built_(BuildDialog(kTemplate, *this)), desktop_(this) {
  setObjectName(QStringLiteral("vntts_record"));
  view_ = std::make_unique<WidgetView>(*this, built_,
                                       [this](int timer) { controller_->OnTimer(timer); });
  controller_ = std::make_unique<CRecordDlg>(*view_, desktop_, recorder, std::move(file_name));
  for (const ButtonResources& b : kButtons) {
    auto* button = static_cast<BitmapButton*>(built_.controls.at(b.id));
    button->LoadBitmaps(b.bitmaps);
    const auto tip = LoadString(b.tip);
    if (tip)
      button->setToolTip(QString::fromLatin1(tip->data(), static_cast<qsizetype>(tip->size())));
    button->setAccessibleName(button->text().remove(QLatin1Char('&')));
    button->setProperty(kNameFromCaption, true);
  }
  const auto on_click = [this](int id, void (CRecordDlg::*handler)()) {
    connect(static_cast<QAbstractButton*>(built_.controls.at(id)), &QAbstractButton::clicked, this,
            [this, handler] { (controller_.get()->*handler)(); });
  };
  on_click(kStart, &CRecordDlg::OnStart);
  on_click(kPause, &CRecordDlg::OnPauseResume);
  on_click(kStop, &CRecordDlg::OnStop);
  on_click(kCancel, &CRecordDlg::OnCancel);
  controller_->OnInitDialog();
}

void RecordWindow::reject() {
  controller_->OnCancel();
}

void RecordWindow::Abandon() {
  view_->KillTimer(kTimerId);
  recorder_.Close();
  done(kCancel);
}

} // namespace vntts::ui
