// SPDX-License-Identifier: MIT
#include "ui/qt/template_builder.h"

#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTreeWidget>
#include <vector>

#include "ui/qt/bitmap_button.h"
#include "ui/qt/fonts.h"

namespace vntts::ui {
namespace {

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The selection stays as visible when the focus is elsewhere (on a button, say).
void KeepSelectionVisible(QWidget* widget) {
  QPalette palette = widget->palette();
  for (auto role : {QPalette::Highlight, QPalette::HighlightedText})
    palette.setColor(QPalette::Inactive, role, palette.color(QPalette::Active, role));
  widget->setPalette(palette);
}

QWidget* MakeEdit(const ControlTemplate& c, QWidget* parent) {
  if (!(c.styles & kMultiLine)) {
    auto* line = new QLineEdit(ToQString(c.text), parent);
    line->setFrame(c.styles & kBorder);
    return line;
  }
  auto* edit = new QPlainTextEdit(ToQString(c.text), parent);
  edit->setVerticalScrollBarPolicy((c.styles & kVerticalScroll) ? Qt::ScrollBarAlwaysOn
                                                                : Qt::ScrollBarAlwaysOff);
  edit->setTabChangesFocus(true);
  if (!(c.styles & kBorder)) edit->setFrameShape(QFrame::NoFrame);
  if (c.styles & kNoHideSelection) KeepSelectionVisible(edit);
  return edit;
}

QWidget* MakeListBox(const ControlTemplate& c, QWidget* parent) {
  auto* list = new QListWidget(parent);
  list->setSelectionMode((c.styles & kExtendedSelection) ? QAbstractItemView::ExtendedSelection
                                                         : QAbstractItemView::SingleSelection);
  if (c.styles & kMultiColumn) {
    // Entries run down a column and on into the next, scrolled sideways.
    list->setFlow(QListView::TopToBottom);
    list->setWrapping(true);
    list->setResizeMode(QListView::Adjust);
  }
  if (!(c.styles & kBorder)) list->setFrameShape(QFrame::NoFrame);
  return list;
}

// A report-style list: rows under column headings, whole rows selected.
QWidget* MakeListView(const ControlTemplate& c, QWidget* parent) {
  auto* list = new QTreeWidget(parent);
  list->setRootIsDecorated(false);
  list->setItemsExpandable(false);
  list->setUniformRowHeights(true);
  list->setColumnCount(0);
  // Columns keep the widths they are given, as a report list's do.
  list->header()->setStretchLastSection(false);
  list->setSelectionBehavior(QAbstractItemView::SelectRows);
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  if (c.styles & kNoHideSelection) KeepSelectionVisible(list);
  return list;
}

QWidget* MakeTreeView(const ControlTemplate& c, QWidget* parent) {
  auto* tree = new QTreeWidget(parent);
  tree->setHeaderHidden(true);
  tree->setColumnCount(1);
  tree->setSelectionMode(QAbstractItemView::SingleSelection);
  if (c.styles & kNoHideSelection) KeepSelectionVisible(tree);
  return tree;
}

QWidget* MakeSlider(const ControlTemplate& c, QWidget* parent) {
  auto* slider = new QSlider(Qt::Horizontal, parent);
  // A trackbar starts at 0..100 and marks only its two ends.
  slider->setRange(0, 100);
  slider->setTickInterval(100);
  slider->setTickPosition((c.styles & kNoTicks) ? QSlider::NoTicks : QSlider::TicksBelow);
  return slider;
}

QWidget* MakeLabel(const ControlTemplate& c, QWidget* parent) {
  auto* label = new QLabel(ToQString(c.text), parent);
  Qt::Alignment horizontal = Qt::AlignLeft;
  if (c.styles & kAlignRight) horizontal = Qt::AlignRight;
  if (c.styles & kAlignCentre) horizontal = Qt::AlignHCenter;
  label->setAlignment(horizontal | Qt::AlignTop);
  return label;
}

QWidget* MakeControl(const ControlTemplate& c, QWidget* parent) {
  switch (c.kind) {
  case ControlKind::kEdit:
    return MakeEdit(c, parent);
  case ControlKind::kPushButton: {
    auto* button = new QPushButton(ToQString(c.text), parent);
    button->setAutoDefault(false);
    return button;
  }
  case ControlKind::kBitmapButton:
    return new BitmapButton(ToQString(c.text), parent);
  case ControlKind::kRadioButton:
    return new QRadioButton(ToQString(c.text), parent);
  case ControlKind::kGroupBox:
    return new QGroupBox(ToQString(c.text), parent);
  case ControlKind::kLabel:
    return MakeLabel(c, parent);
  case ControlKind::kSlider:
    return MakeSlider(c, parent);
  case ControlKind::kComboBox:
    return new QComboBox(parent);
  case ControlKind::kListBox:
    return MakeListBox(c, parent);
  case ControlKind::kListView:
    return MakeListView(c, parent);
  case ControlKind::kTreeView:
    return MakeTreeView(c, parent);
  }
  return nullptr;
}

// The control a label names: the nearest one to its right on the same line, else the nearest
// one just below it that starts under the label (a caption above its edit box).
QWidget* NamedControl(const QRect& at, const std::vector<std::pair<QWidget*, QRect>>& controls) {
  QWidget* best = nullptr;
  int best_distance = 0;
  for (const auto& [control, rect] : controls) {
    const bool same_line = rect.top() < at.bottom() && at.top() < rect.bottom();
    const int distance = rect.left() - at.right();
    if (!same_line || distance < 0 || (best && distance >= best_distance)) continue;
    best = control;
    best_distance = distance;
  }
  if (best) return best;
  for (const auto& [control, rect] : controls) {
    const bool under = rect.left() >= at.left() - 4 && rect.left() < at.right();
    const int distance = rect.top() - at.bottom();
    if (!under || distance < 0 || (best && distance >= best_distance)) continue;
    best = control;
    best_distance = distance;
  }
  return best;
}

// A label's mnemonic moves the focus to the control it names, which is also what a screen
// reader should announce for that control. Without a buddy Qt would show the '&' itself.
void ConnectLabels(const std::vector<std::pair<QLabel*, QRect>>& labels,
                   const std::vector<std::pair<QWidget*, QRect>>& controls) {
  for (const auto& [label, at] : labels) {
    QWidget* best = NamedControl(at, controls);
    if (!best) continue;
    label->setBuddy(best);
    QString name = label->text();
    best->setAccessibleName(name.remove(QLatin1Char('&')));
  }
}

} // namespace

DialogUnits::DialogUnits(const QFont& font) {
  const QFontMetrics metrics(font);
  const int letters = metrics.horizontalAdvance(
      QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
  base_x_ = (letters + 26) / 52;
  base_y_ = metrics.height();
}

BuiltDialog BuildDialog(const DialogTemplate& t, QDialog& dialog) {
  BuiltDialog built{TemplateFont(t.font, t.point_size), {}};
  dialog.setWindowTitle(ToQString(t.caption));
  dialog.setFont(built.font);
  const DialogUnits units(built.font);

  std::vector<std::pair<QLabel*, QRect>> labels;
  std::vector<std::pair<QWidget*, QRect>> focusable;
  std::vector<QWidget*> frames;
  for (const ControlTemplate& c : t.controls) {
    QWidget* widget = MakeControl(c, &dialog);
    QRect rect = units.Rect(c.rect);
    // A drop-down list's height in the template includes its open list.
    if (c.kind == ControlKind::kComboBox) rect.setHeight(widget->sizeHint().height());
    widget->setGeometry(rect);
    widget->setProperty(kControlIdProperty, c.id);
    widget->setObjectName(QStringLiteral("control_%1").arg(c.id));
    if (c.styles & kDisabled) widget->setEnabled(false);
    if (c.styles & kHidden) widget->hide();
    if (c.kind == ControlKind::kGroupBox)
      frames.push_back(widget);
    else if (auto* label = qobject_cast<QLabel*>(widget))
      labels.emplace_back(label, rect);
    else
      focusable.emplace_back(widget, rect);
    if (c.id != kStaticId) built.controls[c.id] = widget;
  }
  // Frames are drawn behind the controls they surround and must not take their clicks.
  for (QWidget* frame : frames)
    frame->lower();
  ConnectLabels(labels, focusable);
  dialog.setFixedSize(units.X(t.width), units.Y(t.height));
  return built;
}

QWidget* FindControl(const QWidget& parent, int id) {
  for (QWidget* child : parent.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    if (child->property(kControlIdProperty).toInt() == id &&
        child->property(kControlIdProperty).isValid())
      return child;
  return nullptr;
}

} // namespace vntts::ui
