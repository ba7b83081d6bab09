// SPDX-License-Identifier: MIT
// What hosts do from their notification functions and while speech plays: release the library,
// chain speech, stop, unregister, edit the event list, wait for their own thread, load a wave,
// speak to files. None of it may crash, hang or lose a call.
#include "library_fixture.h"

namespace vntts::test {
namespace {

constexpr const char* kLongSentence =
    "Một hai ba bốn năm sáu bảy tám chín mười mười một mười hai mười ba mười bốn.";

// Ends speech before the test's Calls go: no callback may run into them afterwards.
void EndSpeech() {
  SetNotifyFunc(nullptr, 0);
  StopSpeak();
  EXPECT_EQ(VNWaitUntilDone(10000), 1);
}

// Speaks a short text with a fresh engine and checks that every word is heard.
void ExpectAFreshEngineSpeaks() {
  Calls d;
  SpeakVNUTF8("Năm.", &Count, Pass(d));
  EXPECT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_EQ(d.words, 1);
}

// The notification function calls an export once, at the first event of a kind (and sets
// `result`); after the speech, what the host finds.
struct FromTheCallback {
  const char* text;
  void (*act)(Calls&, const VNEvent&);
  void (*check)(Calls&);
};

const FromTheCallback kFromTheCallback[] = {
    // ReleaseLib ends the engine cleanly; a fresh one frees it on the way.
    {"Một hai. Ba bốn.",
     [](Calls& c, const VNEvent& e) {
       if (e.kind == VN_EVENT_SOUND_END && c.result < 0) c.result = ReleaseLib();
     },
     [](Calls& c) {
       EXPECT_EQ(c.result, 1);
       EXPECT_EQ(IsPlaying(), 0) << "the engine is gone";
       ExpectAFreshEngineSpeaks();
     }},
    // Speech chained on the sound's end is spoken whole, however long the host goes on.
    {"Một hai ba.",
     [](Calls& c, const VNEvent& e) {
       if (e.kind != VN_EVENT_SOUND_END || c.result >= 0) return;
       c.result = 0;
       SpeakVNUTF8("Bốn năm sáu.", &Count, Pass(c));
       std::this_thread::sleep_for(5ms);
     },
     [](Calls& c) { EXPECT_EQ(c.words, 6); }},
    // A function that unregisters itself is not called again.
    {"Một hai ba bốn.",
     [](Calls& c, const VNEvent& e) {
       if (e.kind != VN_EVENT_WORD_BOUNDARY || c.result >= 0) return;
       c.result = 0;
       EXPECT_EQ(SetNotifyFunc(nullptr, 0), nullptr);
       c.unregistered = true;
     },
     [](Calls& c) {
       EXPECT_EQ(c.words, 1);
       EXPECT_EQ(c.late, 0);
     }},
    // An event added at the first sentence's boundary (position 0) fires in the second.
    {"Một hai. Ba bốn.",
     [](Calls& c, const VNEvent& e) {
       if (e.kind != VN_EVENT_SENTENCE_BOUNDARY || c.result >= 0) return;
       c.result = 0;
       VNEvent mine{};
       mine.kind = VN_EVENT_RESERVED;
       AddVNEvent(&mine);
     },
     [](Calls& c) { EXPECT_EQ(c.Fired(VN_EVENT_RESERVED), 1); }},
};

TEST_F(VoiceTest, ExportsCalledFromTheCallback) {
  for (const FromTheCallback& test : kFromTheCallback) {
    SCOPED_TRACE(&test - kFromTheCallback);
    Calls c;
    c.act = test.act;
    SpeakVNUTF8(test.text, &Count, Pass(c));
    ASSERT_TRUE(Eventually([&] { return c.result >= 0; }, 10s));
    EXPECT_EQ(VNWaitUntilDone(20000), 1);
    test.check(c);
    EXPECT_TRUE(Shown().empty()) << Shown().front().text;
    const Deadline deadline(5);
    ReleaseLib();
  }
}

void VNTTS_CALL WaitForTheHost(uintptr_t user, VNEvent e) {
  if (e.kind != VN_EVENT_WORD_BOUNDARY) return;
  ++Of(user).words;
  std::lock_guard lock(Of(user).host_lock); // blocks while the host holds it
}

// The host holds a lock its callback needs and, holding it, speaks again and releases the
// library: neither may wait for the callback.
TEST_F(VoiceTest, ACallbackWaitingForTheHostBlocksNoCall) {
  Calls c;
  SpeakVNUTF8(kLongSentence, &WaitForTheHost, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 1; }, 10s));
  {
    std::lock_guard lock(c.host_lock);
    std::this_thread::sleep_for(300ms); // the callback is now waiting for the lock
    const Deadline deadline(5);         // a speak call over speech waits a second
    SpeakVNUTF8(kLongSentence, &WaitForTheHost, Pass(c));
    EXPECT_EQ(StopSpeak(), 1);
    EXPECT_EQ(ReleaseLib(), 1);
  }
  ExpectAFreshEngineSpeaks(); // once the host lets go, the released engine finishes
}

void VNTTS_CALL CountSlowly(uintptr_t user, VNEvent e) {
  ++Of(user).entered;
  std::this_thread::sleep_for(20ms);
  --Of(user).entered;
  Count(user, e);
}

// SetNotifyFunc is how a host learns that its function is done: once it returns, a call that
// was running has returned (the host may free the user data) and none begins.
TEST_F(VoiceTest, NoCallOfTheOldFunctionBeginsAfterSetNotifyFuncReturns) {
  Calls c;
  SpeakVNUTF8(kLongSentence, &CountSlowly, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 2; }, 10s));
  ASSERT_TRUE(Eventually([&] { return c.entered > c.left; }, 2s));
  SetNotifyFunc(nullptr, 0);
  EXPECT_EQ(c.entered, c.left) << "the running call has returned";
  c.unregistered = true;
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(c.late, 0);
  EndSpeech();
}

// Client events added while a sentence plays fire (in the next sentence, being at position 0)
// and stay in the list; a list emptied while a sentence plays stays empty.
TEST_F(VoiceTest, EventListEditsDuringSpeechLast) {
  Calls c;
  VNEvent draw{}, mine{};
  draw.kind = VN_EVENT_DRAW;
  mine.kind = VN_EVENT_RESERVED;
  EXPECT_EQ(AddVNEvent(&draw), 1u);
  SpeakVNUTF8("Một hai ba bốn năm. Sáu bảy.", &Count, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 1; }, 10s));
  RemoveAllEvents();
  EXPECT_EQ(AddVNEvent(&mine), 1u);
  ASSERT_EQ(VNWaitUntilDone(20000), 1);
  EXPECT_EQ(c.Fired(VN_EVENT_DRAW), 1) << "fired at the first sentence's start, then removed";
  EXPECT_EQ(c.Fired(VN_EVENT_RESERVED), 1) << "added during the first sentence";
  EXPECT_EQ(AddVNEvent(&mine), 2u) << "the event added during speech is still in the list";
}

// A take recorded through the library (the null backend records silence at real-time pace) is
// loaded again and again and played while a sentence plays, at a volume below full so that the
// device copies what it plays: the sentence keeps its own sound, the second play is refused.
TEST_F(VoiceTest, LoadingAndPlayingTheWaveDuringSpeechIsSafe) {
  const std::string take = Path("take.wav");
  ASSERT_EQ(RecordToFile(take.c_str(), 300), 1);
  ASSERT_EQ(LoadFileWave(take.c_str()), 1);
  std::uint32_t rate = 0;
  ASSERT_EQ(GetWaveInfo(nullptr, &rate, nullptr), 1);
  EXPECT_NEAR(double(GetCountSample()) / rate, 0.3, 0.001) << "the length asked for";
  EXPECT_EQ(SetVolume(0x80008000u), 0);
  Calls c;
  SpeakVNUTF8(kLongSentence, &Count, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 1; }, 10s));
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(LoadFileWave(take.c_str()), 1);
    std::this_thread::sleep_for(20ms);
  }
  EXPECT_EQ(PlayWave(0, 100), 4) << "one stream at a time";
  EndSpeech();
}

// The callback starts speech while the host does too: one speech wins, nothing breaks.
TEST_F(VoiceTest, SpeechStartedFromTheCallbackAndTheHostAtOnce) {
  Calls c;
  c.act = [](Calls& self, const VNEvent& e) {
    if (e.kind == VN_EVENT_WORD_BOUNDARY) SpeakVNUTF8Ex("Một hai.", 0, &Count, Pass(self));
  };
  const auto until = std::chrono::steady_clock::now() + 1500ms;
  while (std::chrono::steady_clock::now() < until) {
    SpeakVNUTF8Ex("Ba bốn năm.", 0, &Count, Pass(c));
    std::this_thread::sleep_for(30ms);
  }
  EXPECT_GT(c.words, 5);
  EndSpeech();
}

using SpeechToFile = VoiceTest;

// The next call deletes the file the previous one created, never a file it only tried.
TEST_F(SpeechToFile, OnlyAFileItCreatedIsDeleted) {
  folder_.Write("notes.txt", "the user's notes");
  for (const char* name : {"notes.txt", "one.wav", "two.wav"}) {
    ASSERT_EQ(SaveVNToWaveFile("Một.", Path(name).c_str()), 1);
    ASSERT_EQ(VNWaitUntilDone(10000), 1);
  }
  const auto shown = Shown();
  EXPECT_EQ(std::count_if(shown.begin(), shown.end(),
                          [](const ShownMessage& m) { return m.icon != VN_MESSAGE_INFORMATION; }),
            1)
      << "not a WAV file: refused, once";
  EXPECT_EQ(folder_.Names(), (std::vector<std::string>{"notes.txt", "two.wav"}));
}

std::string Le32(std::uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i)
    bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

// A file that cannot grow any more (its data at the 4 GB limit) ends the speech with one
// message, not one per sentence.
TEST_F(SpeechToFile, AFileAtTheSizeLimitEndsTheSpeechWithOneMessage) {
  const std::uint32_t data = 0xFFFFFF00u; // 16-bit stereo at 22050 Hz
  folder_.Write("full.wav", "RIFF" + Le32(36 + data) + "WAVEfmt " + Le32(16) + Le32(0x00020001) +
                                Le32(22050) + Le32(88200) + Le32(0x00100004) + "data" + Le32(data));
  std::filesystem::resize_file(folder_ / "full.wav", 44 + std::uintmax_t{data}); // sparse
  ASSERT_EQ(SaveVNToWaveFile("Một. Hai. Ba. Bốn.", Path("full.wav").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(20000), 1);
  EXPECT_EQ(Shown().size(), 1u);
}

} // namespace
} // namespace vntts::test
