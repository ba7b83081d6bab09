// SPDX-License-Identifier: MIT
#include "ui/qt/speaker_window.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QIcon>
#include <QPlainTextEdit>
#include <QSlider>

#include "ui/qt/bitmap_button.h"
#include "ui/qt/fonts.h"
#include "ui/qt/gui_context.h"
#include "ui/resources.h"
#include "ui/speaker_template.h"

namespace vntts::ui {

using namespace speaker;

namespace {

// Carries the engine's reports from its threads to the window's thread, where the controller
// lives; a report that arrives after the window is gone is dropped.
class WindowRelay final : public SpeechListener {
public:
  void OnSpeechEvent(std::uint32_t speech, const SpeechEvent& event) override {
    Post([target = target_, speech, event] {
      if (auto c = target.lock()) c->OnSpeechEvent(speech, event);
    });
  }
  void OnSpeechEnded(std::uint32_t speech) override {
    Post([target = target_, speech] {
      if (auto c = target.lock()) c->OnSpeechEnded(speech);
    });
  }
  void SetTarget(std::weak_ptr<CSpeakerDlg> target) { target_ = std::move(target); }

private:
  template <class F> static void Post(F&& call) {
    GuiContext::Instance().Post(std::forward<F>(call));
  }
  std::weak_ptr<CSpeakerDlg> target_;
};

struct ButtonResources {
  int id;
  const BitmapSet& bitmaps;
  int tip;
};

const ButtonResources kButtons[] = {
    {kOpenFile, kOpenFileBitmaps, 32808}, {kCancel, kCancelBitmaps, 32807},
    {kStop, kStopBitmaps, 32800},         {kSpeak, kPlayBitmaps, 32799},
    {kPause, kPauseBitmaps, 32801},
};

int ScrollCode(int action) {
  switch (action) {
  case QAbstractSlider::SliderSingleStepSub:
    return CSpeakerDlg::kLineUp;
  case QAbstractSlider::SliderSingleStepAdd:
    return CSpeakerDlg::kLineDown;
  case QAbstractSlider::SliderPageStepSub:
    return CSpeakerDlg::kPageUp;
  case QAbstractSlider::SliderPageStepAdd:
    return CSpeakerDlg::kPageDown;
  case QAbstractSlider::SliderToMinimum:
    return 6;
  case QAbstractSlider::SliderToMaximum:
    return 7;
  default:
    return -1;
  }
}

QString Tip(int id) {
  const auto text = LoadString(id).value_or("");
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

SpeakerWindow::SpeakerWindow(SpeakerEngine& engine, std::uintptr_t value)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      built_(BuildDialog(kTemplate, *this)), desktop_(this), value_(value) {
  setObjectName(QStringLiteral("vntts_speaker"));
  // The engine's reports come back through the windows' context (a window made directly inside
  // a program's own application adopts it).
  GuiContext::Instance().Ensure(nullptr);
  view_ = std::make_unique<WidgetView>(*this, built_, [](int) {});
  auto relay = std::make_shared<WindowRelay>();
  controller_ = std::make_shared<CSpeakerDlg>(*view_, desktop_, engine, relay);
  relay->SetTarget(controller_);
  LoadResources();
  Connect();
  controller_->OnInitDialog();
}

SpeakerWindow::~SpeakerWindow() = default;

void SpeakerWindow::LoadResources() {
  setWindowIcon(QIcon(QStringLiteral(":/icons/%1").arg(kIconId)));
  built_.controls.at(kEdit)->setFont(EditFont());
  for (const ButtonResources& b : kButtons) {
    auto* button = static_cast<BitmapButton*>(built_.controls.at(b.id));
    button->LoadBitmaps(b.bitmaps);
    button->setToolTip(Tip(b.tip));
    button->setAccessibleName(Tip(b.tip));
  }
  built_.controls.at(kVolume)->setToolTip(Tip(32809));
}

void SpeakerWindow::Connect() {
  const auto on_click = [this](int id, void (CSpeakerDlg::*handler)()) {
    connect(static_cast<QAbstractButton*>(built_.controls.at(id)), &QAbstractButton::clicked, this,
            [this, handler] { (controller_.get()->*handler)(); });
  };
  on_click(kSpeak, &CSpeakerDlg::OnSpeak);
  on_click(kPause, &CSpeakerDlg::OnPauseResume);
  on_click(kStop, &CSpeakerDlg::OnStop);
  on_click(kOpenFile, &CSpeakerDlg::OnOpenFile);
  on_click(kEnglish, &CSpeakerDlg::OnEnglish);
  on_click(kVietnamese, &CSpeakerDlg::OnVietnamese);
  on_click(kReset, &CSpeakerDlg::OnReset);
  on_click(kCancel, &CSpeakerDlg::OnCancel);
  connect(static_cast<QComboBox*>(built_.controls.at(kFormat)), &QComboBox::activated, this,
          [this] { controller_->OnFormatChosen(); });
  for (int slider : {kVolume, kRate, kPitch})
    ConnectSlider(slider);
}

// Slider moves reach OnHScroll as trackbars report them: the thumb's positions while it is
// dragged, the step of a key or a click beside the thumb, and an end-of-move after each.
void SpeakerWindow::ConnectSlider(int id) {
  auto* slider = static_cast<QSlider*>(built_.controls.at(id));
  connect(slider, &QSlider::sliderMoved, this,
          [this, id](int value) { controller_->OnHScroll(CSpeakerDlg::kThumbTrack, value, id); });
  connect(slider, &QSlider::sliderReleased, this, [this, id, slider] {
    controller_->OnHScroll(CSpeakerDlg::kThumbPosition, slider->value(), id);
    controller_->OnHScroll(CSpeakerDlg::kEndScroll, 0, id);
  });
  connect(slider, &QAbstractSlider::actionTriggered, this, [this, id, slider](int action) {
    if (slider->isSliderDown()) return; // a drag: its moves and its release report it
    if (const int code = ScrollCode(action); code >= 0) controller_->OnHScroll(code, 0, id);
    // The slider takes its new position after this signal; the end of the move reads it.
    QMetaObject::invokeMethod(
        this, [this, id] { controller_->OnHScroll(CSpeakerDlg::kEndScroll, 0, id); },
        Qt::QueuedConnection);
  });
}

void SpeakerWindow::SetEditText(const QString& text) {
  view_->SetText(kEdit, ToU16(text));
}

void SpeakerWindow::reject() {
  controller_->OnCancel();
}

} // namespace vntts::ui
