// SPDX-License-Identifier: MIT
// The windows over a real engine that plays into the null sink (VNTTS_AUDIO=null) and records
// from the null source: what a person sees while it speaks and records.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSlider>
#include <filesystem>

#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "support/temp_folder.h"
#include "ui/host/engine_dialogs.h"
#include "ui/qt/record_window.h"
#include "ui/qt/speaker_window.h"
#include "ui/record_template.h"
#include "ui/speaker_template.h"
#include "view_test_support.h"

namespace vntts::ui {
namespace {

using namespace std::chrono_literals;

class RealEngineTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    setenv("VNTTS_AUDIO", "null", 1);
    setenv("VNTTS_DATA_DIR", VNTTS_BINARY_DIR "/bin/index", 0);
  }
  void SetUp() override {
    if (!std::filesystem::exists(std::string(std::getenv("VNTTS_DATA_DIR")) + "/main_dic.dat"))
      GTEST_SKIP() << "no voice in the data folder";
  }
  RecordedMessages messages;
  SpeechEngine engine{messages, DataFolder::Locate()};
  EngineDialogs dialogs{engine};
};

class SpeakingWindowTest : public RealEngineTest {
protected:
  void SetUp() override {
    RealEngineTest::SetUp();
    if (IsSkipped()) return;
    window = std::make_unique<SpeakerWindow>(dialogs.speaker(), 0);
    window->show();
    edit = test::Control<QPlainTextEdit>(*window, speaker::kEdit);
    QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit, [this] {
      const QString selected = edit->textCursor().selectedText();
      if (!selected.isEmpty()) highlights.push_back(selected.toStdString());
    });
  }
  bool Idle() const { return FindControl(*window, speaker::kSpeak)->isEnabled(); }

  std::unique_ptr<SpeakerWindow> window;
  QPlainTextEdit* edit = nullptr;
  std::vector<std::string> highlights;
};

// The engine's word events, relative to the selection it was given, land on the words the
// person selected: a base or byte-to-character fault shows as a highlight beside the word.
TEST_F(SpeakingWindowTest, ASelectionIsSpokenAloneAndHighlightedInPlace) {
  const QString text = QStringLiteral("Một hai ba. Đường Lê Lợi rất đẹp.");
  window->SetEditText(text);
  QTextCursor cursor = edit->textCursor();
  cursor.setPosition(static_cast<int>(text.indexOf(QStringLiteral("Đường"))));
  cursor.setPosition(static_cast<int>(text.size()), QTextCursor::KeepAnchor);
  edit->setTextCursor(cursor);
  highlights.clear();
  test::Press(*window, speaker::kSpeak);
  EXPECT_FALSE(Idle());
  ASSERT_TRUE(QTest::qWaitFor([this] { return Idle(); }, 60000));
  std::erase(highlights, "Đường Lê Lợi rất đẹp."); // the sentence's own highlight
  EXPECT_EQ(highlights, (std::vector<std::string>{"Đường", "Lê", "Lợi", "rất", "đẹp"}));
  EXPECT_TRUE(messages.entries.empty());
}

TEST_F(SpeakingWindowTest, PauseStopAndResetActOnTheEngineAsTheButtonsSay) {
  EXPECT_EQ(engine.GetVolume(), 13107u); // left channel only, as the window starts it
  window->SetEditText(QStringLiteral("Một hai ba bốn năm sáu bảy tám chín mười. Một hai ba."));
  test::Press(*window, speaker::kSpeak);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !highlights.empty(); }, 20000));
  test::Press(*window, speaker::kPause);
  EXPECT_FALSE(FindControl(*window, speaker::kStop)->isEnabled());
  EXPECT_TRUE(window->controller().paused());
  const std::size_t seen = highlights.size();
  QTest::qWait(400);
  EXPECT_EQ(highlights.size(), seen) << "no word is spoken while paused";
  test::Press(*window, speaker::kPause);
  EXPECT_TRUE(FindControl(*window, speaker::kStop)->isEnabled());
  test::Press(*window, speaker::kStop);
  EXPECT_TRUE(Idle());
  // Stop does not wait for the sentence's player to close its stream; it soon has.
  EXPECT_TRUE(QTest::qWaitFor([this] { return engine.IsPlaying() == 0; }, 2000));

  // The keyboard moves the sliders; each move reaches the engine at its end.
  auto* volume = test::Control<QSlider>(*window, speaker::kVolume);
  auto* rate = test::Control<QSlider>(*window, speaker::kRate);
  volume->setFocus();
  QTest::keyClick(volume, Qt::Key_End);
  rate->setFocus();
  QTest::keyClick(rate, Qt::Key_Home);
  QTest::qWait(50);
  EXPECT_EQ(engine.GetVolume(), 0xFFFFFFFFu);
  EXPECT_EQ(engine.GetRateSpeech(), 0u);
  test::Press(*window, speaker::kReset);
  EXPECT_EQ(volume->value(), 13107);
  EXPECT_EQ(rate->value(), 5000);
  EXPECT_EQ(engine.GetVolume(), 0xFFFFFFFFu) << "Reset moves the sliders only";
  EXPECT_EQ(engine.GetRateSpeech(), 5000u);
}

TEST_F(RealEngineTest, RecordingCountsTimeAndSavesTheTakeWhereTheUserChooses) {
  using namespace record;
  vntts::test::TempFolder folder;
  const QString path = QString::fromStdString((folder / "take.wav").string());
  RecordWindow window(dialogs.recorder(), 0, "");
  window.show();
  test::Press(window, kStart);
  auto* time = test::Control<QLabel>(window, kTime);
  ASSERT_TRUE(QTest::qWaitFor([time] { return time->text().endsWith(QLatin1Char(' ')); }, 5000));
  EXPECT_GT(test::Control<QSlider>(window, kIndicator)->value(), 0);
  test::Press(window, kPause);
  EXPECT_EQ(test::Control<QAbstractButton>(window, kPause)->text(), QStringLiteral("&Resume"));
  const QString paused_at = time->text();
  QTest::qWait(300);
  EXPECT_EQ(time->text(), paused_at);
  test::Press(window, kPause);
  QTest::qWait(300);
  test::Press(window, kStop);
  EXPECT_TRUE(FindControl(window, kCancel)->isEnabled());

  test::SeenBox question;
  test::AnswerNextBox(&question, QMessageBox::Yes);
  test::ChooseInNextFileDialog(path);
  test::Press(window, kCancel);
  EXPECT_EQ(question.text, QStringLiteral("Would you like to save record to file ?"));
  EXPECT_EQ(question.title, QStringLiteral("Question"));
  EXPECT_EQ(question.icon, QMessageBox::Question);
  EXPECT_EQ(window.result(), kCancel);
  EXPECT_EQ(window.controller().file_name(), path.toStdString());
  EXPECT_TRUE(window.controller().saved());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.read(4) == "RIFF");
  EXPECT_GT(file.size(), 44);
}

} // namespace
} // namespace vntts::ui
