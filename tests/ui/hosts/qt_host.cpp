// SPDX-License-Identifier: MIT
// A Qt program that uses the windows through the library from inside its own event loop: the
// Speaker window lives on the program's thread, the Record window runs a nested loop, the Tools
// sheet and the abbreviation editor open from it, and the library's messages are message boxes.
// It ends with ReleaseLib.
//   test_ui_qt_host [SCREENSHOT_FOLDER]
// Given a folder (scripts/screenshots runs it under Xvfb), it also writes the windows as a person
// sees them: speaker-idle.png, speaker-speaking.png (a word highlighted while it is spoken),
// record-idle.png, record-recording.png, record-question.png (the offer to save), the Tools
// sheet's pages tools-create-data.png, tools-phrase-express.png and tools-auto-correct.png, and
// the abbreviation editor definitions.png.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSlider>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "../qt_helpers.h"
#include "vntts/vntts.h"

namespace {

using vntts::ui::test::AnswerNextBox;
using vntts::ui::test::Child;
using vntts::ui::test::SeenBox;
using vntts::ui::test::Window;

QString folder; // where screenshots go; none when empty
int failures = 0;

#define CHECK(condition)                                                                           \
  do {                                                                                             \
    if (!(condition)) {                                                                            \
      std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition);                         \
      ++failures;                                                                                  \
    }                                                                                              \
  } while (0)

// The window's pixels as the display shows them, when screenshots are asked for.
void Shoot(QWidget* window, const char* name) {
  if (folder.isEmpty()) return;
  if (!QTest::qWaitForWindowExposed(window)) std::fprintf(stderr, "%s was not shown\n", name);
  QTest::qWait(150);
  QPixmap shot = window->screen()->grabWindow(window->winId());
  if (shot.isNull() || shot.size().isEmpty()) shot = window->grab();
  const QString path = QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png"));
  CHECK(shot.save(path));
  std::printf("%s\n", qPrintable(path));
}

QWidget* WaitForWindow(const char* name) {
  QWidget* window = nullptr;
  CHECK(QTest::qWaitFor([&] { return (window = Window(name)) != nullptr; }, 10000));
  return window;
}

// The timer counts the take and stands still while it is paused; a take saved on closing is a
// wave file where the person chose.
void UseTheRecordWindow() {
  QWidget* record = WaitForWindow("vntts_record");
  if (!record) return;
  Shoot(record, "record-idle");
  Child(record, 1024)->click(); // Start
  auto* time = Child<QLabel>(record, 1026);
  CHECK(QTest::qWaitFor([time] { return time->text().endsWith(QLatin1Char(' ')); }, 5000));
  QTest::qWait(1300);
  CHECK(Child<QSlider>(record, 1025)->value() > 0); // the indicator
  Shoot(record, "record-recording");
  Child(record, 1027)->click(); // Pause
  CHECK(Child(record, 1027)->text() == QLatin1String("&Resume"));
  const QString paused_at = time->text();
  QTest::qWait(300);
  CHECK(time->text() == paused_at);
  Child(record, 1027)->click(); // Resume
  Child(record, 1000)->click(); // Stop
  SeenBox question;
  AnswerNextBox(&question, QMessageBox::Yes,
                [](QMessageBox* box) { Shoot(box, "record-question"); });
  QTemporaryDir takes;
  vntts::ui::test::ChooseInNextFileDialog(takes.filePath(QStringLiteral("take.wav")));
  Child(record, 2)->click(); // Cancel: the question, the file dialog, then the end
  CHECK(question.title == QLatin1String("Question"));
  CHECK(question.text == QLatin1String("Would you like to save record to file ?"));
  QFile take(takes.filePath(QStringLiteral("take.wav")));
  CHECK(take.open(QIODevice::ReadOnly) && take.read(4) == "RIFF" && take.size() > 44);
}

void UseTheToolsSheet() {
  QWidget* sheet = WaitForWindow("vntts_tools");
  if (!sheet) return;
  auto* tabs = sheet->findChild<QTabWidget*>();
  // A folder of recordings, named as a voice's are.
  QTemporaryDir recordings;
  for (const char* name :
       {"a", "ba", "Bá", "chào", "hai", "một", "xin", "việt", "nam", "tốt", "ngày", "mới"})
    QFile(recordings.filePath(QString::fromUtf8(name) + QStringLiteral(".mp3")))
        .open(QIODevice::WriteOnly);
  CHECK(
      vntts::ui::test::SelectFolder(*Child<QTreeWidget>(tabs->widget(0), 1012), recordings.path()));
  Shoot(sheet, "tools-create-data");

  tabs->setCurrentIndex(1);
  QWidget* phrases = tabs->widget(1);
  Child<QPlainTextEdit>(phrases, 1017)
      ->setPlainText(QStringLiteral("Hà Nội, Sài Gòn, Đà Nẵng. Hôm nay trời đẹp.\n"
                                    "Xin chào, cảm ơn, tạm biệt. Một hai ba."));
  AnswerNextBox(nullptr, QMessageBox::Ok);
  Child(phrases, 1021)->click(); // Add
  Shoot(sheet, "tools-phrase-express");

  tabs->setCurrentIndex(2);
  QWidget* corrections = tabs->widget(2);
  const std::pair<const char*, const char*> pairs[] = {
      {"ko", "không"}, {"dc", "được"}, {"vn", "Việt Nam"}, {"tphcm", "Thành phố Hồ Chí Minh"}};
  for (const auto& [replace, with] : pairs) {
    Child<QLineEdit>(corrections, 1024)->setText(QString::fromUtf8(replace));
    Child<QLineEdit>(corrections, 1016)->setText(QString::fromUtf8(with));
    Child(corrections, 1021)->click(); // Add
  }
  CHECK(Child<QTreeWidget>(corrections, 1015)->topLevelItemCount() == 4);
  Shoot(sheet, "tools-auto-correct");
  static_cast<QDialog*>(sheet)->reject();
}

void UseTheEditor() {
  QWidget* editor = WaitForWindow("vntts_definitions");
  if (!editor) return;
  if (auto* list = Child<QTreeWidget>(editor, 1023); list && list->topLevelItemCount() > 2) {
    list->setCurrentItem(list->topLevelItem(2));
    emit list->itemClicked(list->topLevelItem(2), 0);
  }
  Shoot(editor, "definitions");
  Child(editor, 1)->click(); // Close
}

void UseTheSpeakerWindow(QWidget* speaker) {
  auto* edit = Child<QPlainTextEdit>(speaker, 1034);
  CHECK(edit->toPlainText() == QLatin1String("Xin chao cac ban."));
  if (!folder.isEmpty())
    edit->setPlainText(
        QStringLiteral("Xin chào các bạn. Hôm nay trời đẹp, chúng ta cùng đọc tiếng Việt: "
                       "Đường Lê Lợi, quận Một, có 1.250 cây xanh."));
  Shoot(speaker, "speaker-idle");

  // The words are highlighted as they are spoken; for the screenshot the speech is held on a
  // word in the middle, then goes on to its end.
  const QString held_word = QStringLiteral("trời");
  bool highlighted = false, held = false;
  QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit, [&] {
    highlighted = highlighted || edit->textCursor().hasSelection();
    if (!folder.isEmpty() && !held && edit->textCursor().selectedText() == held_word)
      held = PauseSpeak() == 1;
  });
  Child(speaker, 32779)->click(); // Speak
  CHECK(!Child(speaker, 32779)->isEnabled());
  if (!folder.isEmpty()) {
    CHECK(QTest::qWaitFor([&] { return held; }, 30000));
    Shoot(speaker, "speaker-speaking");
    CHECK(ResumeSpeak() == 1);
  }
  CHECK(QTest::qWaitFor([&] { return Child(speaker, 32779)->isEnabled(); }, 30000));
  CHECK(highlighted);
}

void Run() {
  CHECK(SpeakDlg(0, "Xin chao cac ban.") == 1);
  QWidget* speaker = Window("vntts_speaker");
  CHECK(speaker != nullptr);
  if (!speaker) return;
  UseTheSpeakerWindow(speaker);

  // A message of the library is a message box on this thread while the windows are loaded.
  SeenBox said;
  AnswerNextBox(&said, QMessageBox::Ok);
  CHECK(LoadFileWave("/no/such/folder/file.wav") == 0);
  CHECK(said.title == QLatin1String("Open File Error"));
  CHECK(said.text == QLatin1String("Could not open file !"));

  QTimer::singleShot(0, UseTheRecordWindow);
  CHECK(Record(0) == 2);
  QTimer::singleShot(0, UseTheToolsSheet);
  Tools(0);
  QTimer::singleShot(0, UseTheEditor);
  EditDefinition(0);

  Child(speaker, 2)->click(); // Cancel closes the Speaker window
  CHECK(Window("vntts_speaker") == nullptr);
  CHECK(ReleaseLib() == 1);
}

} // namespace

int main(int argc, char** argv) {
  if (argc > 2) {
    std::fputs("usage: test_ui_qt_host [SCREENSHOT_FOLDER]\n", stderr);
    return 2;
  }
  if (argc == 1 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  if (argc == 2) folder = QString::fromLocal8Bit(argv[1]);
  if (!folder.isEmpty()) QDir().mkpath(folder);
  QTimer::singleShot(0, [&] {
    Run();
    app.quit();
  });
  app.exec();
  return failures ? 1 : 0;
}
