// SPDX-License-Identifier: MIT
// The built windows carry their templates: ids, kinds, texts, places, fonts, images, tips.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTreeWidget>

#include "../fake_dialog.h"
#include "ui/auto_correct_template.h"
#include "ui/create_data_template.h"
#include "ui/definition_template.h"
#include "ui/phrase_express_template.h"
#include "ui/qt/bitmap_button.h"
#include "ui/qt/definition_window.h"
#include "ui/qt/fonts.h"
#include "ui/qt/record_window.h"
#include "ui/qt/speaker_window.h"
#include "ui/qt/tools_sheet.h"
#include "ui/record_template.h"
#include "ui/speaker_template.h"
#include "view_test_support.h"

namespace vntts::ui {
namespace {

bool IsKind(const QWidget* w, ControlKind kind) {
  // The Qt class each kind becomes, in ControlKind's order; of the two kinds of QTreeWidget a
  // list view shows its column headings and a tree view does not.
  static const char* const kClasses[] = {"QPlainTextEdit", "QPushButton", "",
                                         "QRadioButton",   "QGroupBox",   "QLabel",
                                         "QSlider",        "QComboBox",   "QListWidget",
                                         "QTreeWidget",    "QTreeWidget"};
  const auto* tree = qobject_cast<const QTreeWidget*>(w);
  switch (kind) {
  case ControlKind::kEdit:
    return w->inherits("QPlainTextEdit") || w->inherits("QLineEdit");
  case ControlKind::kBitmapButton:
    return dynamic_cast<const BitmapButton*>(w);
  case ControlKind::kListView:
    return tree && !tree->isHeaderHidden();
  case ControlKind::kTreeView:
    return tree && tree->isHeaderHidden();
  default:
    return w->inherits(kClasses[static_cast<int>(kind)]);
  }
}

QString TextOf(const QWidget* w) {
  if (auto* b = qobject_cast<const QAbstractButton*>(w)) return b->text();
  if (auto* l = qobject_cast<const QLabel*>(w)) return l->text();
  if (auto* g = qobject_cast<const QGroupBox*>(w)) return g->title();
  if (auto* e = qobject_cast<const QPlainTextEdit*>(w)) return e->toPlainText();
  return {};
}

// The widget a template control became: by id, or for labels and frames by kind and text.
const QWidget* Built(const QWidget& window, const ControlTemplate& c) {
  if (c.id != kStaticId) return FindControl(window, c.id);
  for (const QWidget* w : window.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
    if (IsKind(w, c.kind) && TextOf(w) == QString::fromUtf8(c.text.data(), c.text.size())) return w;
  return nullptr;
}

void ExpectTemplate(const QDialog& window, const DialogTemplate& t) {
  EXPECT_EQ(window.windowTitle().toStdString(), t.caption);
  EXPECT_EQ(window.font().family(), ResolveFace(t.font));
  EXPECT_TRUE(
      QFontDatabase::writingSystems(window.font().family()).contains(QFontDatabase::Vietnamese));
  const DialogUnits units(window.font());
  EXPECT_EQ(window.size(), QSize(units.X(t.width), units.Y(t.height)));
  for (const ControlTemplate& c : t.controls) {
    const QWidget* w = Built(window, c);
    ASSERT_NE(w, nullptr) << t.caption << " " << c.id << " " << c.text;
    EXPECT_TRUE(IsKind(w, c.kind)) << c.id;
    // Lists and trees show no text of their own; the file count shows its count from the
    // start rather than its placeholder.
    if (c.id != create_data::kTotal &&
        (c.kind == ControlKind::kPushButton || c.kind == ControlKind::kBitmapButton ||
         c.kind == ControlKind::kLabel || c.kind == ControlKind::kGroupBox ||
         c.kind == ControlKind::kRadioButton)) {
      EXPECT_EQ(TextOf(w).toStdString(), c.text) << c.id;
    }
    // A mnemonic needs the control it names; without one Qt shows the '&' itself.
    if (c.kind == ControlKind::kLabel &&
        std::string_view(c.text).find('&') != std::string_view::npos) {
      EXPECT_NE(qobject_cast<const QLabel*>(w)->buddy(), nullptr) << t.caption << " " << c.text;
    }
    const QRect expected = units.Rect(c.rect);
    EXPECT_EQ(w->pos(), expected.topLeft()) << c.id;
    if (c.kind == ControlKind::kBitmapButton) {
      // Sized to its up image: 40 x 20, the Open-file button 24 x 22.
      EXPECT_EQ(w->size(), c.id == speaker::kOpenFile ? QSize(24, 22) : QSize(40, 20)) << c.id;
    } else if (c.kind == ControlKind::kComboBox) {
      EXPECT_EQ(w->width(), expected.width()) << c.id;
    } else {
      EXPECT_EQ(w->size(), expected.size()) << c.id;
    }
  }
}

// Windows whose start-up leaves every control as its template has it: hidden and disabled.
void ExpectTemplateStates(const QWidget& window, const DialogTemplate& t) {
  for (const ControlTemplate& c : t.controls) {
    if (c.id == kStaticId) continue;
    const QWidget* w = FindControl(window, c.id);
    EXPECT_EQ(w->isHidden(), (c.styles & kHidden) != 0) << t.caption << " " << c.id;
    EXPECT_EQ(w->isEnabled(), (c.styles & kDisabled) == 0) << t.caption << " " << c.id;
  }
}

// Every window as it opens: built from its template, its logic started (the Tools pages and the
// editor leave their controls as the template has them), in a face that has Vietnamese.
TEST(BuiltWindows, EachWindowCarriesItsTemplate) {
  test::FakeSpeakerEngine engine;
  SpeakerWindow speaker_window(engine, 0);
  ExpectTemplate(speaker_window, speaker::kTemplate);
  EXPECT_FALSE(speaker_window.windowIcon().isNull());
  EXPECT_LE(QFontMetrics(FindControl(speaker_window, speaker::kEdit)->font()).height(), 19);
  // A screen reader names the sliders by the labels to their left.
  EXPECT_EQ(FindControl(speaker_window, speaker::kVolume)->accessibleName(), QStringLiteral("Vol"));
  EXPECT_EQ(FindControl(speaker_window, speaker::kPitch)->accessibleName(),
            QStringLiteral("Pitch"));

  test::FakeRecorder recorder;
  RecordWindow record_window(recorder, 0, "");
  ExpectTemplate(record_window, record::kTemplate);
  EXPECT_EQ(FindControl(record_window, record::kPause)->accessibleName(), QStringLiteral("Pause"));

  ToolsSheet sheet("/nonexistent");
  const DialogTemplate* pages[] = {&create_data::kTemplate, &phrase_express::kTemplate,
                                   &auto_correct::kTemplate};
  ASSERT_EQ(sheet.tabs().count(), 3);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(sheet.tabs().tabText(i).toStdString(), pages[i]->caption);
    ExpectTemplate(*static_cast<QDialog*>(sheet.tabs().widget(i)), *pages[i]);
    ExpectTemplateStates(*sheet.tabs().widget(i), *pages[i]);
  }

  test::FakeTools tools;
  DefinitionWindow editor(tools);
  ExpectTemplate(editor, definition::kTemplate);
  ExpectTemplateStates(editor, definition::kTemplate);
}

// Every image a button shows is found: the names end in a mark that is easy to lose.
TEST(BuiltWindows, ButtonImagesAreFoundUnderTheirExactNames) {
  for (const BitmapSet& set : {kPlayBitmaps, kStopBitmaps, kPauseBitmaps, kCancelBitmaps,
                               kRecordBitmaps, kOpenFileBitmaps})
    for (std::string_view name : {set.up, set.down, set.focused, set.disabled})
      if (!name.empty()) {
        EXPECT_FALSE(LoadBitmapResource(name).isNull()) << name;
      }
  EXPECT_TRUE(LoadBitmapResource("IDB_PLAYU").isNull());
}

} // namespace
} // namespace vntts::ui
