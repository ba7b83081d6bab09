// SPDX-License-Identifier: MIT
// Renders the windows as a person sees them, for review: run by scripts/screenshots under
// Xvfb. It is a Qt program using the windows through the library, like any Qt host.
//   vntts_ui_screenshots OUTPUT_FOLDER
// writes speaker-idle.png, speaker-speaking.png (a word highlighted while it is spoken),
// record-idle.png, record-recording.png and record-question.png (the offer to save).
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>
#include <QTimer>
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
