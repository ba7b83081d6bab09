// SPDX-License-Identifier: MIT
// The windows over a real engine that plays into the null sink (VNTTS_AUDIO=null), as a person
// meets them: the Speaker window highlighting what it speaks, a voice built from recordings in
// the Tools sheet and spoken, phrases collected into a store the engine reads, a definition
// added in the editor and tested. The Record window is used so by the Qt host.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTreeWidget>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "audio/archive/string_list.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "store/user_word_stores.h"
#include "support/temp_folder.h"
#include "text/charset/charsets.h"
#include "ui/create_data_template.h"
#include "ui/definition_template.h"
#include "ui/host/engine_dialogs.h"
#include "ui/phrase_express_template.h"
#include "ui/qt/definition_window.h"
#include "ui/qt/speaker_window.h"
#include "ui/qt/tools_sheet.h"
#include "ui/speaker_template.h"
#include "view_test_support.h"
#include "vntts/vntts.h"

namespace vntts::ui {
namespace {

namespace fs = std::filesystem;

std::string ReadBytes(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// A data folder of its own: the build's voice linked in, the word stores copied, so that a test
// may change them.
struct OwnDataFolder : vntts::test::TempFolder {
  OwnDataFolder() {
    const fs::path index = VNTTS_BINARY_DIR "/bin/index";
    for (const char* name : {"main_dic.dat", "main_dic.idx", "main_dic.arr"})
      if (fs::exists(index / name)) fs::create_symlink(index / name, *this / name);
    fs::copy(index / "Define", *this / "Define");
    fs::copy_file(index / "AutoCrt.crt", *this / "AutoCrt.crt");
  }
};

class RealEngineTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { setenv("VNTTS_AUDIO", "null", 1); }
  void SetUp() override {
    if (!fs::exists(data / "main_dic.dat")) GTEST_SKIP() << "no voice in the build's data folder";
  }

  OwnDataFolder data;
  RecordedMessages messages;
  SpeechEngine engine{messages, DataFolder(data.path())};
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

TEST_F(RealEngineTest, CreateDataBuildsAVoiceFromRecordingsThatTheEngineSpeaks) {
  using namespace create_data;
  // Two recordings of the build's voice, under their syllables' names.
  const fs::path index = data.path();
  const std::string arr = ReadBytes(index / "main_dic.arr");
  const auto keys =
      ParseStringList({reinterpret_cast<const std::uint8_t*>(arr.data()), arr.size()});
  ASSERT_TRUE(keys);
  const std::string idx = ReadBytes(index / "main_dic.idx");
  const std::string dat = ReadBytes(index / "main_dic.dat");
  vntts::test::TempFolder recordings_dir, voice_dir;
  const fs::path& recordings = recordings_dir.path();
  const fs::path& voice = voice_dir.path();
  for (const char* word : {"xin", "ba"}) {
    const auto at = std::find(keys->begin(), keys->end(), word) - keys->begin();
    ASSERT_LT(static_cast<std::size_t>(at), keys->size()) << word;
    std::uint32_t record[2];
    std::memcpy(record, idx.data() + 8 * at, 8);
    std::ofstream(recordings / (std::string(word) + ".MP3"), std::ios::binary)
        << dat.substr(record[0], record[1]);
  }
  std::ofstream(voice / "main_dic.dat"); // the dialog takes only a file that exists

  ToolsSheet sheet(index.string());
  sheet.show();
  QWidget& page = *sheet.tabs().widget(0);
  ASSERT_NE(test::SelectFolder(*test::Control<QTreeWidget>(page, kTree),
                               QString::fromStdString(recordings.string())),
            nullptr);
  auto* list = test::Control<QListWidget>(page, kList);
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->item(0)->text(), QStringLiteral("ba.mp3"));
  EXPECT_EQ(test::Control<QLabel>(page, kTotal)->text(), QStringLiteral("Total : 2 files"));
  test::SeenBox done;
  test::AnswerNextBox(&done, QMessageBox::Ok);
  test::ChooseInNextFileDialog(QString::fromStdString((voice / "main_dic.dat").string()));
  test::Press(page, kCreate);
  EXPECT_EQ(done.text, QStringLiteral("Create data complete."));
  EXPECT_EQ(list->currentRow(), 1);

  // The new voice speaks its syllables exactly as the voice they came from, and only those.
  SpeechEngine built(messages, DataFolder(voice));
  std::vector<std::uint8_t> expected(VN_WORD_BUFFER_BYTES), got(VN_WORD_BUFFER_BYTES);
  std::uint32_t expected_length = 0, got_length = 0;
  for (const char* word : {"xin", "ba"}) {
    engine.RenderWord(word, expected.data(), &expected_length);
    built.RenderWord(word, got.data(), &got_length);
    ASSERT_GT(got_length, 0u) << word;
    EXPECT_EQ(got_length, expected_length) << word;
    EXPECT_TRUE(std::equal(got.begin(), got.begin() + got_length, expected.begin())) << word;
  }
  built.RenderWord("hai", got.data(), &got_length);
  engine.RenderWord("hai", expected.data(), &expected_length);
  EXPECT_NE(got_length, expected_length) << "hai was not among the recordings";
}

TEST_F(RealEngineTest, PhrasesCollectedFromATextBecomeTheEnginesPhraseStore) {
  using namespace phrase_express;
  ToolsSheet sheet(data.path().string());
  sheet.show();
  sheet.tabs().setCurrentIndex(1);
  QWidget& page = *sheet.tabs().widget(1);
  auto* edit = test::Control<QPlainTextEdit>(page, kEdit);
  edit->setFocus();
  // Typed as a paste: key events carry only ASCII letters.
  edit->insertPlainText(QStringLiteral("Hà Nội, Sài Gòn. một hai ba"));
  test::SeenBox complete;
  test::AnswerNextBox(&complete, QMessageBox::Ok);
  test::Press(page, kAdd);
  EXPECT_EQ(complete.text, QStringLiteral("Create Phrase Express Complete."));
  auto* list = test::Control<QListWidget>(page, kList);
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->item(0)->text(), QStringLiteral("Hà Nội"));
  EXPECT_EQ(list->item(1)->text(), QStringLiteral("Sài Gòn"));

  const fs::path store = data.path() / "data.dic";
  test::ChooseInNextFileDialog(QString::fromStdString(store.string()));
  test::Press(page, kCreate);
  // An engine started on the folder reads the new file as its data.dic.
  SpeechEngine reader(messages, DataFolder(data.path()));
  const PhraseStore& phrases = reader.word_stores().phrases;
  EXPECT_EQ(phrases.size(), 2u);
  EXPECT_TRUE(phrases.IsPhrase(Utf8ToInternal("Sài"), Utf8ToInternal("Gòn")));
  EXPECT_FALSE(phrases.IsPhrase(Utf8ToInternal("hai"), Utf8ToInternal("ba")));
}

TEST_F(RealEngineTest, ADefinitionAddedInTheEditorIsSpokenByTest) {
  using namespace definition;
  // Test speaks through the engine; this one notes what it was asked to speak.
  struct Noting final : ToolsEngine {
    explicit Noting(EngineTools& engine) : real(engine) {}
    std::string DataFolder() override { return real.DataFolder(); }
    DefinitionFiles& Definitions() override { return real.Definitions(); }
    void Speak(std::string text) override {
      spoken.push_back(text);
      real.Speak(std::move(text));
    }
    void ReloadAutoCorrect() override {}
    EngineTools& real;
    std::vector<std::string> spoken;
  } noting(dialogs.tools());

  DefinitionWindow window(noting);
  window.show();
  auto* list = test::Control<QTreeWidget>(window, kList);
  const int loaded = list->topLevelItemCount();
  EXPECT_GT(loaded, 0) << "the shipped definitions are listed";
  QTest::keyClicks(test::Control<QLineEdit>(window, kReplace), QStringLiteral("zq"));
  test::Control<QLineEdit>(window, kWith)->insert(QStringLiteral("xin chào"));
  test::Press(window, kAdd);
  ASSERT_EQ(list->topLevelItemCount(), loaded + 1);
  QTreeWidgetItem* added = list->topLevelItem(loaded);
  EXPECT_EQ(added->text(0), QStringLiteral("ZQ"));
  list->scrollToItem(added);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(added).center());
  EXPECT_EQ(test::Control<QLineEdit>(window, kReplace)->text(), QStringLiteral("ZQ"));
  test::Press(window, kTest);
  ASSERT_EQ(noting.spoken, std::vector<std::string>{"ZQ"});
  ASSERT_TRUE(engine.WaitUntilDone(std::chrono::seconds(20)));

  // What the engine read for ZQ is its expansion: the same sound as the expansion itself.
  vntts::test::TempFolder out;
  const std::string short_form = (out / "zq.wav").string();
  const std::string expansion = (out / "xin.wav").string();
  for (const auto& [text, file] : {std::pair{Utf8ToInternal("xin chào"), expansion},
                                   std::pair{std::string("ZQ"), short_form}}) {
    // Each file from an engine of its own, which has written it whole when it is gone.
    SpeechEngine writer(messages, DataFolder(data.path()));
    ASSERT_EQ(writer.SpeakToFile(text, file), 1);
    ASSERT_TRUE(writer.WaitUntilDone(std::chrono::seconds(20)));
  }
  EXPECT_EQ(ReadBytes(short_form), ReadBytes(expansion));
  EXPECT_GT(fs::file_size(short_form), 44u);
  EXPECT_NE(ReadBytes(data.path() / "Define" / "user.def").find("zq	"), std::string::npos);
}

} // namespace
} // namespace vntts::ui
