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

std::u16string U16(const std::string& utf8) {
  std::u16string out;
  DecodeUtf8(utf8, out);
  return out;
}

struct ButtonStates {
  bool speak, stop, pause, cancel;
  bool operator==(const ButtonStates&) const = default;
};

class SpeakerDialogTest : public ::testing::Test {
protected:
  ButtonStates Buttons() const {
    return {view.IsEnabled(kSpeak), view.IsEnabled(kStop), view.IsEnabled(kPause),
            view.IsEnabled(kCancel)};
  }
  // The edit box's selected text.
  std::u16string Highlighted() const {
    const TextSelection s = view.Selection(kEdit);
    return view.Text(kEdit).substr(static_cast<std::size_t>(s.start),
                                   static_cast<std::size_t>(s.end - s.start));
  }
  // A word event for `word`, found after `from` in the spoken UTF-8 text, in internal bytes.
  void WordEvent(const std::string& spoken, const std::string& word, std::uint32_t base,
                 std::size_t from = 0) {
    const std::size_t at = spoken.find(word, from);
    ASSERT_NE(at, std::string::npos);
    SpeechEvent e;
    e.kind = 3;
    e.text_start = base + static_cast<std::uint32_t>(Utf8ToInternal(spoken.substr(0, at)).size());
    e.text_length = static_cast<std::uint32_t>(Utf8ToInternal(word).size());
    dialog.OnSpeechEvent(engine.speech_id, e);
  }

  static constexpr ButtonStates kIdle{true, false, false, true};
  static constexpr ButtonStates kSpeaking{false, true, true, false};
  static constexpr ButtonStates kPaused{false, false, true, false};

  FakeView view{kTemplate};
  FakeDesktop desktop;
  FakeSpeakerEngine engine;
  CSpeakerDlg dialog{view, desktop, engine, nullptr};
};

TEST_F(SpeakerDialogTest, InitialisingResetsTheEngineThenSetsTheDeviceAndShowsIdle) {
  EXPECT_TRUE(dialog.OnInitDialog());
  // The whole default word goes to the device: left channel 13107, right channel silent.
  EXPECT_EQ(engine.calls, (std::vector<std::string>{"reset", "volume 0x3333", "slowness 0"}));
  EXPECT_EQ(view.At(kVolume).maximum, 65535);
  EXPECT_EQ(view.Position(kVolume), 13107);
  EXPECT_EQ(view.At(kRate).maximum, 5000);
  EXPECT_EQ(view.Position(kRate), 5000);
  EXPECT_EQ(Buttons(), kIdle);
  EXPECT_TRUE(view.IsChecked(kVietnamese));
  EXPECT_FALSE(view.IsChecked(kEnglish));
  EXPECT_FALSE(view.IsEnabled(kEnglishVoice));
  EXPECT_TRUE(view.At(kEnglishVoice).items.empty());
  // The format box offers the twelve output formats and shows the one after the reset.
  ASSERT_EQ(view.At(kFormat).items.size(), 12u);
  EXPECT_EQ(view.CurrentData(kFormat), 8u);
}

TEST_F(SpeakerDialogTest, ThePitchSliderFollowsTheDevicesPitchSupport) {
  const struct {
    bool supported;
    std::uint32_t pitch;
    int maximum, position;
    bool enabled;
  } cases[] = {{false, 0x10000, 0, 0, false},
               {true, 0x10000, 65535, 0, true}, // exactly 1.0 shows as 0
               {true, 0x18000, 65535, 0x8000, true},
               {true, 0, 65535, 0, false}};
  for (const auto& c : cases) {
    FakeView v{kTemplate};
    FakeSpeakerEngine e;
    e.pitch_supported = c.supported;
    e.pitch = c.pitch;
    CSpeakerDlg(v, desktop, e, nullptr).OnInitDialog();
    EXPECT_EQ(v.At(kPitch).maximum, c.maximum) << c.pitch;
    EXPECT_EQ(v.Position(kPitch), c.position) << c.pitch;
    EXPECT_EQ(v.IsEnabled(kPitch), c.enabled) << c.pitch;
  }
}

TEST_F(SpeakerDialogTest, SpeakingTheWholeTextHighlightsEachWordAsItIsSpoken) {
  dialog.OnInitDialog();
  const std::string text = "Xin chào bạn. Việt Nam!";
  view.SetText(kEdit, U16(text));
  view.Select(kEdit, {3, 3}); // a caret, no selection
  dialog.OnSpeak();
  EXPECT_TRUE(engine.Called("speak 0"));
  EXPECT_EQ(engine.spoken, Utf8ToInternal(text));
  EXPECT_EQ(Buttons(), kSpeaking);

  for (const char* word : {"Xin", "chào", "bạn", "Việt", "Nam"}) {
    WordEvent(text, word, 0);
    EXPECT_EQ(Highlighted(), U16(word));
  }
  SpeechEvent sentence;
  sentence.kind = 4;
  sentence.sentence_start = 0;
  sentence.sentence_length = static_cast<std::uint32_t>(Utf8ToInternal("Xin chào bạn.").size());
  dialog.OnSpeechEvent(engine.speech_id, sentence);
  EXPECT_EQ(Highlighted(), U16("Xin chào bạn."));
}

TEST_F(SpeakerDialogTest, SpeakingASelectionSpeaksOnlyItAndHighlightsInsideIt) {
  dialog.OnInitDialog();
  const std::string text = "Một hai ba. Bốn năm sáu";
  view.SetText(kEdit, U16(text));
  const auto start = static_cast<int>(U16("Một hai ").size());
  view.Select(kEdit, {static_cast<int>(U16(text).size()), start}); // selected backwards
  dialog.OnSpeak();
  const std::string selected = "ba. Bốn năm sáu";
  EXPECT_TRUE(engine.Called("speak " + std::to_string(start)));
  EXPECT_EQ(engine.spoken, Utf8ToInternal(selected));
  for (const char* word : {"ba", "Bốn", "năm", "sáu"}) {
    WordEvent(selected, word, static_cast<std::uint32_t>(start));
    EXPECT_EQ(Highlighted(), U16(word));
    EXPECT_GE(view.Selection(kEdit).start, start);
  }
}

TEST_F(SpeakerDialogTest, EnglishSpeaksNothingAndKeepsTheButtonsUntilStop) {
  dialog.OnInitDialog();
  dialog.OnEnglish();
  EXPECT_TRUE(view.IsChecked(kEnglish));
  EXPECT_FALSE(view.IsChecked(kVietnamese));
  EXPECT_TRUE(view.IsEnabled(kEnglishVoice));
  view.SetText(kEdit, u"hello");
  dialog.OnSpeak();
  EXPECT_TRUE(engine.spoken.empty());
  EXPECT_EQ(Buttons(), kSpeaking);
  dialog.OnStop();
  EXPECT_EQ(Buttons(), kIdle);
}

TEST_F(SpeakerDialogTest, PauseResumeAndStopChangeTheButtonsOnlyWhenTheEngineDidIt) {
  dialog.OnInitDialog();
  view.SetText(kEdit, u"xin chao");
  dialog.OnSpeak();

  engine.accept_pause = false;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(), kSpeaking);
  EXPECT_FALSE(dialog.paused());

  engine.accept_pause = true;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(), kPaused);
  EXPECT_TRUE(dialog.paused());

  engine.accept_resume = false;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(), kPaused);
  engine.accept_resume = true;
  dialog.OnPauseResume();
  EXPECT_EQ(Buttons(), kSpeaking);
  EXPECT_FALSE(dialog.paused());

  engine.accept_stop = false;
  dialog.OnStop();
  EXPECT_EQ(Buttons(), kSpeaking);
  engine.accept_stop = true;
  view.Enable(kEnglish, false);
  dialog.OnStop();
  EXPECT_EQ(Buttons(), kIdle);
  EXPECT_TRUE(view.IsEnabled(kEnglish));
}

TEST_F(SpeakerDialogTest, TheEndOfTheSpeechBringsBackIdleAndLeavesTheRadiosAlone) {
  dialog.OnInitDialog();
  view.SetText(kEdit, u"xin chao");
  dialog.OnSpeak();
  const std::uint32_t first = engine.speech_id;
  dialog.OnStop();
  dialog.OnSpeak();
  view.Enable(kVietnamese, false);
  dialog.OnSpeechEnded(first); // a late report of the stopped speech
  EXPECT_EQ(Buttons(), kSpeaking);
  dialog.OnSpeechEnded(engine.speech_id);
  EXPECT_EQ(Buttons(), kIdle);
  EXPECT_FALSE(view.IsEnabled(kVietnamese));
  // Words reported after the end change nothing.
  view.Select(kEdit, {0, 0});
  WordEvent("xin chao", "chao", 0);
  EXPECT_EQ(view.Selection(kEdit), (TextSelection{0, 0}));
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
  ASSERT_FALSE(desktop.file_requests.empty());
  // The directory is put back after every choice, a cancelled one included.
  EXPECT_EQ(desktop.directory_sets.size(), std::size(cases) + 1);
  EXPECT_EQ(desktop.directory_sets.back(), "/home/user");
  EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(SpeakerDialogTest, ACurrentDirectoryOf256CharactersOrMoreOpensNothing) {
  dialog.OnInitDialog();
  desktop.directory = std::string(255, 'd');
  dialog.OnOpenFile();
  EXPECT_EQ(desktop.file_requests.size(), 1u);
  EXPECT_TRUE(desktop.shown.empty());
  desktop.directory = std::string(256, 'd');
  dialog.OnOpenFile();
  EXPECT_EQ(desktop.file_requests.size(), 1u);
  ASSERT_EQ(desktop.shown.size(), 1u);
  EXPECT_EQ(desktop.shown[0].text, "Path is too long !!!");
  EXPECT_EQ(desktop.shown[0].caption, "");
}

TEST_F(SpeakerDialogTest, SliderMovesReachTheEngineAsTheirCodesSay) {
  for (const auto& row : vntts::test::ReadTsv("speaker_scroll")) {
    FakeView v{kTemplate};
    FakeSpeakerEngine e;
    e.pitch_supported = row.fields.at(4) == "1";
    e.pitch = 0x10000;
    CSpeakerDlg d(v, desktop, e, nullptr);
    d.OnInitDialog();
    e.calls.clear();
    const int slider = std::stoi(row.fields.at(0));
    v.SetPosition(slider, std::stoi(row.fields.at(3)));
    d.OnHScroll(std::stoi(row.fields.at(1)), std::stoi(row.fields.at(2)), slider);
    const std::string& expected = row.fields.at(5);
    EXPECT_EQ(e.calls,
              expected.empty() ? std::vector<std::string>{} : std::vector<std::string>{expected})
        << "line " << row.line;
  }
}

TEST_F(SpeakerDialogTest, ResetMovesTheSlidersWithoutTouchingTheDevice) {
  engine.pitch_supported = true;
  engine.pitch = 0x10000;
  dialog.OnInitDialog();
  view.SetPosition(kVolume, 100);
  view.SetPosition(kRate, 10);
  view.SetPosition(kPitch, 10);
  view.SetCurrentIndex(kFormat, 11);
  engine.calls.clear();
  dialog.OnReset();
  EXPECT_EQ(engine.calls, std::vector<std::string>{"reset"});
  EXPECT_EQ(view.Position(kVolume), 13107);
  EXPECT_EQ(view.Position(kRate), 5000);
  EXPECT_EQ(view.Position(kPitch), 65535); // 0x10000, clamped by the slider
  EXPECT_EQ(view.CurrentData(kFormat), 8u);
}

TEST_F(SpeakerDialogTest, AChosenFormatGoesToTheEngineAndNoChoiceIsRefused) {
  dialog.OnFormatChosen(); // before initialisation the box is empty
  dialog.OnInitDialog();
  view.SetCurrentIndex(kFormat, 6);
  dialog.OnFormatChosen();
  EXPECT_EQ(engine.calls.front(), "format 4294967295");
  EXPECT_EQ(engine.calls.back(), "format 22");
}

TEST_F(SpeakerDialogTest, CancelStopsTheWindowsSpeechAndEndsTheWindow) {
  dialog.OnInitDialog();
  dialog.OnCancel();
  EXPECT_FALSE(engine.Called("stop"));
  EXPECT_EQ(view.ended, kCancel);

  view.SetText(kEdit, u"xin chao");
  dialog.OnSpeak();
  dialog.OnCancel();
  EXPECT_TRUE(engine.Called("stop"));
  EXPECT_EQ(engine.calls.back(), "detach");
}

} // namespace
} // namespace vntts::ui
