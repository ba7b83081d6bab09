// SPDX-License-Identifier: MIT
// Renders the windows as a person sees them, for review: run by scripts/screenshots under
// Xvfb. It is a Qt program using the windows through the library, like any Qt host.
//   vntts_ui_screenshots OUTPUT_FOLDER
// writes speaker-idle.png, speaker-speaking.png (a word highlighted while it is spoken),
// record-idle.png, record-recording.png and record-question.png (the offer to save), the Tools
// sheet's pages tools-create-data.png, tools-phrase-express.png and tools-auto-correct.png, and
// the abbreviation editor definitions.png.
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <cstdio>

#include "find_windows.h"
#include "vntts/vntts.h"

namespace {

using vntts::ui::host::Button;
using vntts::ui::host::Window;

QString folder;
int failures = 0;

// The window's pixels as the display shows them.
void Shoot(QWidget* window, const char* name) {
  if (!QTest::qWaitForWindowExposed(window)) std::fprintf(stderr, "%s was not shown\n", name);
  QTest::qWait(150);
  QPixmap shot = window->screen()->grabWindow(window->winId());
  if (shot.isNull() || shot.size().isEmpty()) shot = window->grab();
  const QString path = QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
  if (!shot.save(path)) {
    std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    ++failures;
    return;
  }
  std::printf("%s\n", qPrintable(path));
}

void RecordWindowShots() {
  QWidget* record = nullptr;
  (void)QTest::qWaitFor([&] { return (record = Window("vntts_record")) != nullptr; }, 10000);
  if (!record) {
    ++failures;
    return;
  }
  Shoot(record, "record-idle");
  Button(record, 1024)->click(); // Start
  QTest::qWait(1300);
  Shoot(record, "record-recording");
  Button(record, 1000)->click(); // Stop
  QTimer::singleShot(300, [] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      Shoot(box, "record-question");
      box->button(QMessageBox::No)->click();
    }
  });
  Button(record, 2)->click(); // Cancel: the question, then the end
}

// Answers the next message box with OK.
void AcceptNextBox() {
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      box->button(QMessageBox::Ok)->click();
      poll->deleteLater();
    }
  });
  poll->start(20);
}

// Opens the folder tree down to `path` and selects it.
void SelectFolder(QTreeWidget* tree, const QString& path) {
  QTreeWidgetItem* item = tree->topLevelItem(0);
  for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
    tree->expandItem(item);
    QTreeWidgetItem* next = nullptr;
    for (int i = 0; i < item->childCount() && !next; ++i)
      if (item->child(i)->text(0) == part) next = item->child(i);
    if (!next) return;
    item = next;
  }
  tree->setCurrentItem(item);
  tree->scrollToItem(item);
}

template <class T> T* Child(QWidget* window, int id) {
  return window->findChild<T*>(QStringLiteral("control_%1").arg(id));
}

void ToolsShots() {
  QWidget* sheet = nullptr;
  (void)QTest::qWaitFor([&] { return (sheet = Window("vntts_tools")) != nullptr; }, 10000);
  if (!sheet) {
    ++failures;
    return;
  }
  auto* tabs = sheet->findChild<QTabWidget*>();
  // A folder of recordings, named as a voice's are.
  QTemporaryDir recordings;
  for (const char* name :
       {"a", "ba", "Bá", "chào", "hai", "một", "xin", "việt", "nam", "tốt", "ngày", "mới"})
    QFile(recordings.filePath(QString::fromUtf8(name) + QStringLiteral(".mp3")))
        .open(QIODevice::WriteOnly);
  QWidget* create = tabs->widget(0);
  SelectFolder(Child<QTreeWidget>(create, 1012), recordings.path());
  Shoot(sheet, "tools-create-data");

  tabs->setCurrentIndex(1);
  QWidget* phrases = tabs->widget(1);
  Child<QPlainTextEdit>(phrases, 1017)
      ->setPlainText(QStringLiteral("Hà Nội, Sài Gòn, Đà Nẵng. Hôm nay trời đẹp.\n"
                                    "Xin chào, cảm ơn, tạm biệt. Một hai ba."));
  AcceptNextBox();
  Button(phrases, 1021)->click(); // Add
  Shoot(sheet, "tools-phrase-express");

  tabs->setCurrentIndex(2);
  QWidget* corrections = tabs->widget(2);
  const std::pair<const char*, const char*> pairs[] = {
      {"ko", "không"}, {"dc", "được"}, {"vn", "Việt Nam"}, {"tphcm", "Thành phố Hồ Chí Minh"}};
  for (const auto& [replace, with] : pairs) {
    Child<QLineEdit>(corrections, 1024)->setText(QString::fromUtf8(replace));
    Child<QLineEdit>(corrections, 1016)->setText(QString::fromUtf8(with));
    Button(corrections, 1021)->click(); // Add
  }
  Shoot(sheet, "tools-auto-correct");
  static_cast<QDialog*>(sheet)->reject();
}

void DefinitionShots() {
  QWidget* editor = nullptr;
  (void)QTest::qWaitFor([&] { return (editor = Window("vntts_definitions")) != nullptr; }, 10000);
  if (!editor) {
    ++failures;
    return;
  }
  if (auto* list = Child<QTreeWidget>(editor, 1023); list && list->topLevelItemCount() > 2) {
    list->setCurrentItem(list->topLevelItem(2));
    emit list->itemClicked(list->topLevelItem(2), 0);
  }
  Shoot(editor, "definitions");
  Button(editor, 1)->click(); // Close
}

void Run() {
  if (SpeakDlg(0, "") != 1) {
    ++failures;
    return;
  }
  QWidget* speaker = Window("vntts_speaker");
  auto* edit = speaker->findChild<QPlainTextEdit*>(QStringLiteral("control_1034"));
  edit->setPlainText(
      QStringLiteral("Xin chào các bạn. Hôm nay trời đẹp, chúng ta cùng đọc tiếng Việt: "
                     "Đường Lê Lợi, quận Một, có 1.250 cây xanh."));
  Shoot(speaker, "speaker-idle");

  // Speak, and hold the speech on a word in the middle while it is highlighted.
  const QString wanted = QStringLiteral("trời");
  bool held = false;
  QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit, [&] {
    if (!held && edit->textCursor().selectedText() == wanted) held = PauseSpeak() == 1;
  });
  Button(speaker, 32779)->click();
  if (!QTest::qWaitFor([&] { return held; }, 30000)) ++failures;
  Shoot(speaker, "speaker-speaking");
  StopSpeak();
  Button(speaker, 32780)->click(); // back to idle

  QTimer::singleShot(0, RecordWindowShots);
  Record(0);

  QTimer::singleShot(0, ToolsShots);
  Tools(0);
  QTimer::singleShot(0, DefinitionShots);
  EditDefinition(0);
  Button(speaker, 2)->click();
  ReleaseLib();
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: vntts_ui_screenshots OUTPUT_FOLDER\n", stderr);
    return 2;
  }
  QApplication app(argc, argv);
  folder = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(folder);
  QTimer::singleShot(0, [&] {
    Run();
    app.quit();
  });
  app.exec();
  return failures ? 1 : 0;
}
