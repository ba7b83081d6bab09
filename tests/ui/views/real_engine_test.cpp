// SPDX-License-Identifier: MIT
// The windows over a real engine that plays into the null sink (VNTTS_AUDIO=null) and records
// from the null source: what a person sees while it speaks and records.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTemporaryDir>
#include <filesystem>
#include <mutex>

#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "text/charset/charsets.h"
#include "ui/host/engine_dialogs.h"
#include "ui/qt/record_window.h"
#include "ui/qt/speaker_window.h"
#include "ui/record_template.h"
#include "ui/speaker_template.h"
#include "view_test_support.h"

namespace vntts::ui {
namespace {

using namespace std::chrono_literals;

// Passes everything to the engine and notes the word of every word event it reports.
class EventWords final : public SpeakerEngine, public SpeechListener {
public:
  explicit EventWords(SpeakerEngine& real) : real_(real) {}
  void ResetToDefaults() override { real_.ResetToDefaults(); }
  OutputFormat Format() override { return real_.Format(); }
  int SetFormatCode(std::uint32_t code) override { return real_.SetFormatCode(code); }
  void SetVolume(std::uint32_t v) override { real_.SetVolume(v); }
  bool PitchSupported() override { return real_.PitchSupported(); }
  std::uint32_t Pitch() override { return real_.Pitch(); }
  void SetPitch(std::uint32_t p) override { real_.SetPitch(p); }
  void SetSlowness(std::uint32_t s) override { real_.SetSlowness(s); }
  bool Pause() override { return real_.Pause(); }
  bool Resume() override { return real_.Resume(); }
  bool Stop() override { return real_.Stop(); }
  void Detach() override { real_.Detach(); }
  void Speak(std::string text, std::uint32_t base, std::uint32_t speech,
             std::shared_ptr<SpeechListener> listener) override {
    {
      std::lock_guard lock(mutex_);
      text_ = text;
      base_ = base;
      window_ = std::move(listener);
      words_.clear();
    }
    real_.Speak(std::move(text), base, speech, self_);
  }
  void OnSpeechEvent(std::uint32_t speech, const SpeechEvent& e) override {
    std::shared_ptr<SpeechListener> window;
    {
      std::lock_guard lock(mutex_);
      if (e.kind == 3)
        words_.push_back(InternalToUtf8(text_.substr(e.text_start - base_, e.text_length)));
      window = window_;
    }
    window->OnSpeechEvent(speech, e);
  }
  void OnSpeechEnded(std::uint32_t speech) override {
    std::shared_ptr<SpeechListener> window;
    {
      std::lock_guard lock(mutex_);
      window = window_;
    }
    window->OnSpeechEnded(speech);
  }
  std::vector<std::string> Words() {
    std::lock_guard lock(mutex_);
    return words_;
  }
  void Own(std::shared_ptr<EventWords> self) { self_ = std::move(self); }

private:
  SpeakerEngine& real_;
  std::mutex mutex_;
  std::string text_;
  std::uint32_t base_ = 0;
  std::shared_ptr<SpeechListener> window_;
  std::vector<std::string> words_;
  std::shared_ptr<SpeechListener> self_;
};

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
    spy = std::make_shared<EventWords>(dialogs.speaker());
    spy->Own(spy);
    window = std::make_unique<SpeakerWindow>(*spy, 0);
    window->show();
    edit = test::Control<QPlainTextEdit>(*window, speaker::kEdit);
    QObject::connect(edit, &QPlainTextEdit::selectionChanged, edit, [this] {
      const QString selected = edit->textCursor().selectedText();
      if (!selected.isEmpty()) highlights.push_back(selected.toStdString());
    });
  }
  void TearDown() override {
    if (spy) spy->Own(nullptr);
  }
  bool Idle() const { return FindControl(*window, speaker::kSpeak)->isEnabled(); }
  bool WaitIdle() {
    return QTest::qWaitFor([this] { return Idle(); }, 60000);
  }
  // The highlights of words: the sentence highlights left out.
  std::vector<std::string> WordHighlights(std::initializer_list<std::string> sentences) const {
    std::vector<std::string> words;
    for (const std::string& h : highlights)
      if (std::find(sentences.begin(), sentences.end(), h) == sentences.end()) words.push_back(h);
    return words;
  }

  std::shared_ptr<EventWords> spy;
  std::unique_ptr<SpeakerWindow> window;
  QPlainTextEdit* edit = nullptr;
  std::vector<std::string> highlights;
};

TEST_F(SpeakingWindowTest, SpeakHighlightsEachSpokenWordInOrderAndReturnsToIdle) {
  const std::string first = "Xin chào các bạn.";
  const std::string second = "Hôm nay trời đẹp.";
  window->SetEditText(QString::fromStdString(first + " " + second));
  test::Press(*window, speaker::kSpeak);
  EXPECT_FALSE(Idle());
  ASSERT_TRUE(WaitIdle());
  const std::vector<std::string> words = spy->Words();
  EXPECT_EQ(words,
            (std::vector<std::string>{"Xin", "chào", "các", "bạn", "Hôm", "nay", "trời", "đẹp"}));
  EXPECT_EQ(WordHighlights({first, second}), words);
  EXPECT_TRUE(messages.entries.empty());
}

TEST_F(SpeakingWindowTest, ASelectionIsSpokenAloneAndHighlightedInPlace) {
  const QString text = QStringLiteral("Một hai ba. Đường Lê Lợi rất đẹp.");
  window->SetEditText(text);
  const int start = static_cast<int>(text.indexOf(QStringLiteral("Đường")));
  QTextCursor cursor = edit->textCursor();
  cursor.setPosition(start);
  cursor.setPosition(static_cast<int>(text.size()), QTextCursor::KeepAnchor);
  edit->setTextCursor(cursor);
  highlights.clear();
  test::Press(*window, speaker::kSpeak);
  ASSERT_TRUE(WaitIdle());
  const std::vector<std::string> words = spy->Words();
  EXPECT_EQ(words, (std::vector<std::string>{"Đường", "Lê", "Lợi", "rất", "đẹp"}));
  EXPECT_EQ(WordHighlights({"Đường Lê Lợi rất đẹp."}), words);
}

TEST_F(SpeakingWindowTest, PauseStopAndResetActOnTheEngineAsTheButtonsSay) {
  EXPECT_EQ(engine.GetVolume(), 13107u); // left channel only, as the window starts it
  window->SetEditText(QStringLiteral("Một hai ba bốn năm sáu bảy tám chín mười. Một hai ba."));
  test::Press(*window, speaker::kSpeak);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !highlights.empty(); }, 20000));
  test::Press(*window, speaker::kPause);
  EXPECT_FALSE(FindControl(*window, speaker::kStop)->isEnabled());
  EXPECT_TRUE(window->controller().paused());
  const std::size_t seen = spy->Words().size();
  QTest::qWait(400);
  EXPECT_EQ(spy->Words().size(), seen) << "no word is spoken while paused";
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
  QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("take.wav"));
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
  auto* choose = new QTimer;
  QObject::connect(choose, &QTimer::timeout, choose, [choose, path] {
    if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
      dialog->selectFile(path);
      static_cast<QDialog*>(dialog)->accept();
      choose->deleteLater();
    }
  });
  choose->start(20);
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
