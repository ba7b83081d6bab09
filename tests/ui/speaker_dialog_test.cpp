// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "fake_dialog.h"
#include "support/tsv_table.h"
#include "text/charset/charsets.h"
#include "text/charset/unicode_codecs.h"
#include "ui/speaker_dialog.h"
#include "ui/speaker_template.h"

namespace vntts::ui {
namespace {

using namespace speaker;
using test::FakeDesktop;
using test::FakeSpeakerEngine;
using test::FakeView;
using Calls = std::vector<std::string>;

std::u16string U16(const std::string& utf8) {
  std::u16string out;
  DecodeUtf8(utf8, out);
  return out;
}

struct ButtonStates {
  bool speak, stop, pause, cancel;
  bool operator==(const ButtonStates&) const = default;
};

ButtonStates Buttons(const FakeView& v) {
  return {v.IsEnabled(kSpeak), v.IsEnabled(kStop), v.IsEnabled(kPause), v.IsEnabled(kCancel)};
}

constexpr ButtonStates kIdle{true, false, false, true};
constexpr ButtonStates kSpeaking{false, true, true, false};
constexpr ButtonStates kPaused{false, false, true, false};

class SpeakerDialogTest : public ::testing::Test {
protected:
  // The edit box's selected text.
  std::u16string Highlighted() const {
    const TextSelection s = view.Selection(kEdit);
    return view.Text(kEdit).substr(static_cast<std::size_t>(s.start),
                                   static_cast<std::size_t>(s.end - s.start));
  }
  // A word event for `word`, found in the spoken UTF-8 text, in internal bytes.
  void WordEvent(const std::string& spoken, const std::string& word, std::uint32_t base) {
    const std::size_t at = spoken.find(word);
    ASSERT_NE(at, std::string::npos);
    SpeechEvent e;
    e.kind = 3;
    e.text_start = base + static_cast<std::uint32_t>(Utf8ToInternal(spoken.substr(0, at)).size());
    e.text_length = static_cast<std::uint32_t>(Utf8ToInternal(word).size());
    dialog.OnSpeechEvent(engine.speech_id, e);
  }
  void Speak() {
    view.SetText(kEdit, u"xin chao");
    dialog.OnSpeak();
  }

  FakeView view{kTemplate};
  FakeDesktop desktop;
  FakeSpeakerEngine engine;
  CSpeakerDlg dialog{view, desktop, engine, nullptr};
};

// Start-up and Reset show the same defaults; only start-up sends the sliders to the device. The
// pitch slider follows the device's pitch support (a pitch of exactly 1.0 shows as 0).
TEST_F(SpeakerDialogTest, StartUpAndResetShowTheEnginesDefaults) {
  const struct {
    bool supported;
    std::uint32_t pitch;
    int maximum, position;
    bool enabled;
  } cases[] = {{false, 0x10000, 0, 0, false},
               {true, 0x10000, 65535, 0, true},
               {true, 0x18000, 65535, 0x8000, true},
               {true, 0, 65535, 0, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.pitch);
    FakeView v{kTemplate};
    FakeSpeakerEngine e;
    e.pitch_supported = c.supported;
    e.pitch = c.pitch;
    CSpeakerDlg d(v, desktop, e, nullptr);
    d.OnFormatChosen(); // before start-up the box is empty: "no choice" goes to the engine
    EXPECT_TRUE(d.OnInitDialog());
    // The whole default word goes to the device: left channel 13107, right channel silent.
    EXPECT_EQ(e.calls, (Calls{"format 4294967295", "reset", "volume 0x3333", "slowness 0"}));
    EXPECT_EQ(v.At(kPitch).maximum, c.maximum);
    EXPECT_EQ(v.Position(kPitch), c.position);
    EXPECT_EQ(v.IsEnabled(kPitch), c.enabled);
    EXPECT_EQ(Buttons(v), kIdle);
    EXPECT_TRUE(v.IsChecked(kVietnamese) && !v.IsChecked(kEnglish));
    EXPECT_FALSE(v.IsEnabled(kEnglishVoice));
    EXPECT_TRUE(v.At(kEnglishVoice).items.empty());
    ASSERT_EQ(v.At(kFormat).items.size(), 12u);
    for (bool reset : {false, true}) {
      if (reset) {
        v.SetPosition(kVolume, 100);
        v.SetPosition(kRate, 10);
        v.SetPosition(kPitch, 10);
        e.calls = {};
        d.OnReset();
        EXPECT_EQ(e.calls, Calls{"reset"});
        EXPECT_EQ(v.Position(kPitch), c.maximum); // 0x10000, clamped by the slider
      }
      EXPECT_EQ(v.At(kVolume).maximum, 65535);
      EXPECT_EQ(v.Position(kVolume), 13107);
      EXPECT_EQ(v.At(kRate).maximum, 5000);
      EXPECT_EQ(v.Position(kRate), 5000);
      EXPECT_EQ(v.CurrentData(kFormat), 8u) << "the format after the engine's reset";
      v.SetCurrentIndex(kFormat, 6);
      d.OnFormatChosen();
      EXPECT_EQ(e.calls.back(), "format 22");
    }
  }
}

// The whole text when nothing is selected, else only the selection (here made backwards); each
// word the engine reports is highlighted in place, and so is a sentence.
TEST_F(SpeakerDialogTest, SpokenWordsAreHighlightedWhereTheyStand) {
  dialog.OnInitDialog();
  const std::string text = "Xin chào bạn. Việt Nam!";
  const auto start = static_cast<int>(U16("Xin chào ").size());
  const struct {
    TextSelection selection;
    std::string spoken;
    std::uint32_t base;
    std::vector<std::string> words;
  } cases[] = {{{3, 3}, text, 0, {"Xin", "chào", "bạn", "Việt", "Nam"}},
               {{static_cast<int>(U16(text).size()), start},
                "bạn. Việt Nam!",
                static_cast<std::uint32_t>(start),
                {"bạn", "Việt", "Nam"}}};
  for (const auto& c : cases) {
    view.SetText(kEdit, U16(text));
    view.Select(kEdit, c.selection);
    dialog.OnSpeak();
    EXPECT_EQ(engine.calls.back(), "speak " + std::to_string(c.base));
    EXPECT_EQ(engine.spoken, Utf8ToInternal(c.spoken));
    EXPECT_EQ(Buttons(view), kSpeaking);
    for (const std::string& word : c.words) {
      WordEvent(c.spoken, word, c.base);
      EXPECT_EQ(Highlighted(), U16(word));
    }
    dialog.OnStop();
  }
  view.Select(kEdit, {0, 0});
  dialog.OnSpeak();
  SpeechEvent sentence;
  sentence.kind = 4;
  sentence.sentence_length = static_cast<std::uint32_t>(Utf8ToInternal("Xin chào bạn.").size());
  dialog.OnSpeechEvent(engine.speech_id, sentence);
  EXPECT_EQ(Highlighted(), U16("Xin chào bạn."));
}

TEST_F(SpeakerDialogTest, PauseResumeAndStopChangeTheButtonsOnlyWhenTheEngineDidIt) {
  dialog.OnInitDialog();
  // With English chosen nothing is spoken, and the buttons stay so until Stop.
  dialog.OnEnglish();
  EXPECT_TRUE(view.IsChecked(kEnglish) && !view.IsChecked(kVietnamese));
  EXPECT_TRUE(view.IsEnabled(kEnglishVoice));
  Speak();
  EXPECT_TRUE(engine.spoken.empty());
  EXPECT_EQ(Buttons(view), kSpeaking);
  dialog.OnStop();
  EXPECT_EQ(Buttons(view), kIdle);
  dialog.OnVietnamese();
  Speak();

  engine.accept_pause = false;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(view), kSpeaking);
  EXPECT_FALSE(dialog.paused());
  engine.accept_pause = true;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(view), kPaused);
  EXPECT_TRUE(dialog.paused());
  engine.accept_resume = false;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(view), kPaused);
  engine.accept_resume = true;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(view), kSpeaking);
  EXPECT_FALSE(dialog.paused());

  engine.accept_stop = false;
  dialog.OnStop();
  EXPECT_EQ(Buttons(view), kSpeaking);
  engine.accept_stop = true;
  view.Enable(kEnglish, false);
  dialog.OnStop();
  EXPECT_EQ(Buttons(view), kIdle);
  EXPECT_TRUE(view.IsEnabled(kEnglish));
}

TEST_F(SpeakerDialogTest, TheEndOfTheSpeechBringsBackIdleAndCancelStopsItFirst) {
  dialog.OnInitDialog();
  Speak();
  const std::uint32_t first = engine.speech_id;
  dialog.OnStop();
  dialog.OnSpeak();
  view.Enable(kVietnamese, false);
  dialog.OnSpeechEnded(first); // a late report of the stopped speech
  EXPECT_EQ(Buttons(view), kSpeaking);
  dialog.OnSpeechEnded(engine.speech_id);
  EXPECT_EQ(Buttons(view), kIdle);
  EXPECT_FALSE(view.IsEnabled(kVietnamese)) << "the end leaves the radios alone";
  // Words reported after the end change nothing.
  view.Select(kEdit, {0, 0});
  WordEvent("xin chao", "chao", 0);
  EXPECT_EQ(view.Selection(kEdit), (TextSelection{0, 0}));

  engine.calls.clear();
  dialog.OnCancel();
  EXPECT_EQ(engine.calls, Calls{"detach"}) << "nothing of this window's is speaking";
  EXPECT_EQ(view.ended, kCancel);
  Speak();
  dialog.OnCancel();
  EXPECT_EQ(engine.calls, (Calls{"detach", "speak 0", "stop", "detach"}));
}

TEST_F(SpeakerDialogTest, OpeningAFileShowsAllButItsLastByte) {
  dialog.OnInitDialog();
  const auto file = [](std::string bytes) { return Desktop::FileBytes{bytes, bytes.size()}; };
  desktop.files["/t/ascii.txt"] = file("abcdef");
  desktop.files["/t/utf8.txt"] = file("Xin chào\n");
  desktop.files["/t/cut.txt"] = file("Việ"); // dropping the last byte cuts "ệ" in two
  desktop.files["/t/vni.txt"] = file("Vie\xE4t Nam.");
  desktop.files["/t/zero.txt"] = file(std::string("ab\0cd", 5));
  desktop.files["/t/empty.txt"] = file("");
  desktop.files["/t/short.txt"] = {"abc", 10};
  const std::pair<const char*, std::u16string> cases[] = {
      {"/t/ascii.txt", u"abcde"},      {"/t/utf8.txt", U16("Xin chào")}, {"/t/cut.txt", u"Vi"},
      {"/t/vni.txt", U16("Việt Nam")}, {"/t/zero.txt", u"ab"},           {"/t/empty.txt", u""},
      {"/t/short.txt", u"before"},     {"/t/missing.txt", u"before"}};
  for (const auto& [path, shown] : cases) {
    view.SetText(kEdit, u"before");
    desktop.chosen = path;
    dialog.OnOpenFile();
    EXPECT_EQ(view.Text(kEdit), shown) << path;
  }
  desktop.chosen.reset();
  dialog.OnOpenFile();
  EXPECT_EQ(view.Text(kEdit), u"before");
  // The directory is put back after every choice, a cancelled one included.
  EXPECT_EQ(desktop.directory_sets.size(), std::size(cases) + 1);
  EXPECT_EQ(desktop.directory_sets.back(), "/home/user");
  EXPECT_TRUE(desktop.shown.empty());

  // A current directory of 256 characters or more opens nothing.
  const std::size_t asked = desktop.file_requests.size();
  desktop.directory = std::string(255, 'd');
  dialog.OnOpenFile();
  EXPECT_EQ(desktop.file_requests.size(), asked + 1);
  EXPECT_TRUE(desktop.shown.empty());
  desktop.directory = std::string(256, 'd');
  dialog.OnOpenFile();
  EXPECT_EQ(desktop.file_requests.size(), asked + 1);
  ASSERT_EQ(desktop.shown.size(), 1u);
  EXPECT_EQ(desktop.shown[0].text, "Path is too long !!!");
  EXPECT_EQ(desktop.shown[0].caption, "");
}

TEST_F(SpeakerDialogTest, SliderMovesReachTheEngineAsTheirCodesSay) {
  for (const auto& row : vntts::test::ReadTsv("speaker_scroll")) {
    FakeView v{kTemplate};
    FakeSpeakerEngine e;
    e.pitch_supported = row.at(4) == "1";
    e.pitch = 0x10000;
    CSpeakerDlg d(v, desktop, e, nullptr);
    d.OnInitDialog();
    e.calls.clear();
    const int slider = std::stoi(row.at(0));
    v.SetPosition(slider, std::stoi(row.at(3)));
    d.OnHScroll(std::stoi(row.at(1)), std::stoi(row.at(2)), slider);
    EXPECT_EQ(e.calls, row[5].empty() ? Calls{} : Calls{row[5]}) << "line " << row.line;
  }
}

} // namespace
} // namespace vntts::ui
