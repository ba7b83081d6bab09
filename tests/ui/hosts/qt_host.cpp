// SPDX-License-Identifier: MIT
// A Qt program that uses the windows through the library from inside its own event loop: the
// Speaker window lives on the program's thread, the Record window runs a nested loop, and the
// library's messages are message boxes. It ends with ReleaseLib.
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "find_windows.h"
#include "vntts/vntts.h"

namespace {

using vntts::ui::host::Button;
using vntts::ui::host::Window;

int failures = 0;

#define CHECK(condition)                                                                           \
  do {                                                                                             \
    if (!(condition)) {                                                                            \
      std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition);                         \
      ++failures;                                                                                  \
    }                                                                                              \
  } while (0)

// Answers the next message box with `answer` and keeps what it said.
void AnswerNextBox(QString* said, QMessageBox::StandardButton answer) {
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll, said, answer] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    *said = box->windowTitle() + QLatin1String(": ") + box->text();
    box->button(answer)->click();
    poll->deleteLater();
  });
  poll->start(20);
}

void UseTheRecordWindow() {
  QWidget* record = nullptr;
  CHECK(QTest::qWaitFor([&] { return (record = Window("vntts_record")) != nullptr; }, 10000));
  if (!record) return;
  Button(record, 1024)->click(); // Start
  QTest::qWait(300);
  Button(record, 1000)->click(); // Stop
  QString question;
  AnswerNextBox(&question, QMessageBox::No);
  Button(record, 2)->click(); // Cancel
  CHECK(question == QLatin1String("Question: Would you like to save record to file ?"));
}

void Run() {
  CHECK(SpeakDlg(0, "Xin chao cac ban.") == 1);
  QWidget* speaker = Window("vntts_speaker");
  CHECK(speaker != nullptr);
  if (!speaker) return;
  auto* edit = speaker->findChild<QPlainTextEdit*>(QStringLiteral("control_1034"));
  CHECK(edit->toPlainText() == QLatin1String("Xin chao cac ban."));
  bool highlighted = false;
  QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit,
                   [&] { highlighted = highlighted || edit->textCursor().hasSelection(); });
  Button(speaker, 32779)->click(); // Speak
  CHECK(!Button(speaker, 32779)->isEnabled());
  CHECK(QTest::qWaitFor([&] { return Button(speaker, 32779)->isEnabled(); }, 30000));
  CHECK(highlighted);

  // A message of the library is a message box on this thread while the windows are loaded.
  QString said;
  AnswerNextBox(&said, QMessageBox::Ok);
  CHECK(LoadFileWave("/no/such/folder/file.wav") == 0);
  CHECK(said == QLatin1String("Open File Error: Could not open file !"));

  QTimer::singleShot(0, UseTheRecordWindow);
  CHECK(Record(0) == 2);

  Button(speaker, 2)->click(); // Cancel closes the Speaker window
  CHECK(Window("vntts_speaker") == nullptr);
  CHECK(ReleaseLib() == 1);
}

} // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QTimer::singleShot(0, [&] {
    Run();
    app.quit();
  });
  app.exec();
  return failures ? 1 : 0;
}
