// SPDX-License-Identifier: MIT
// What hosts do from their notification functions and while speech plays: release the library,
// chain speech, stop, unregister, edit the event list, wait for their own thread, load a wave.
// None of it may crash, hang or lose a call.
#include <atomic>
#include <cstring>
#include <fstream>
#include <mutex>

#include "library_fixture.h"

namespace vntts::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kLongSentence =
    "Một hai ba bốn năm sáu bảy tám chín mười mười một mười hai mười ba mười bốn.";

struct Calls {
  std::atomic<int> all{0};
  std::atomic<int> words{0};
  std::atomic<int> sound_ends{0};
  std::atomic<int> result{-1};
  std::atomic<int> entered{0}, left{0};
  std::atomic<bool> unregistered{false};
  std::atomic<int> late{0};
  std::mutex host_lock;
  std::mutex kinds_mutex;
  std::vector<std::uint32_t> kinds;
  // What a callback chains on.
  VNNotifyProc next = nullptr;
  struct Calls* next_user = nullptr;
};

// Ends speech before the test's Calls go: no callback may run into them afterwards.
void EndSpeech() {
  SetNotifyFunc(nullptr, 0);
  StopSpeak();
  EXPECT_EQ(VNWaitUntilDone(10000), 1);
}

Calls* Of(uintptr_t user) {
  return reinterpret_cast<Calls*>(user);
}
uintptr_t Pass(Calls& c) {
  return reinterpret_cast<uintptr_t>(&c);
}

void VNTTS_CALL Count(uintptr_t user, VNEvent e) {
  Calls& c = *Of(user);
  ++c.entered;
  if (c.unregistered) ++c.late;
  ++c.all;
  if (e.kind == VN_EVENT_WORD_BOUNDARY) ++c.words;
  if (e.kind == VN_EVENT_SOUND_END) ++c.sound_ends;
  {
    std::lock_guard lock(c.kinds_mutex);
    c.kinds.push_back(e.kind);
  }
  ++c.left;
}

void VNTTS_CALL ReleaseAtSoundEnd(uintptr_t user, VNEvent e) {
  if (e.kind == VN_EVENT_SOUND_END && Of(user)->result < 0) Of(user)->result = ReleaseLib();
}

TEST_F(VoiceTest, ReleaseLibFromTheCallbackEndsTheEngineCleanly) {
  Calls c;
  SpeakVNUTF8("Một hai. Ba bốn.", &ReleaseAtSoundEnd, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.result >= 0; }, 10s));
  EXPECT_EQ(c.result, 1);
  EXPECT_EQ(IsPlaying(), 0) << "the engine is gone";
  // A fresh engine speaks again, and the released one is freed on the way.
  Calls d;
  SpeakVNUTF8("Năm.", &Count, Pass(d));
  EXPECT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_EQ(d.words, 1);
}

void VNTTS_CALL ChainAtFirstSoundEnd(uintptr_t user, VNEvent e) {
  Calls& c = *Of(user);
  if (e.kind != VN_EVENT_SOUND_END || c.result >= 0) return;
  c.result = 0;
  SpeakVNUTF8("Bốn năm sáu.", c.next, reinterpret_cast<uintptr_t>(c.next_user));
  std::this_thread::sleep_for(5ms); // the host's own work after the call
}

TEST_F(VoiceTest, SpeechChainedFromTheCallbackIsSpoken) {
  Calls first, second;
  first.next = &Count;
  first.next_user = &second;
  SpeakVNUTF8("Một hai ba.", &ChainAtFirstSoundEnd, Pass(first));
  ASSERT_TRUE(Eventually([&] { return first.result == 0; }, 10s));
  EXPECT_EQ(VNWaitUntilDone(20000), 1);
  EXPECT_EQ(second.words, 3);
  EXPECT_TRUE(Shown().empty()) << Shown().front().text;
  WithinTime(5s, [] { ReleaseLib(); });
}

void VNTTS_CALL WaitForTheHost(uintptr_t user, VNEvent e) {
  Calls& c = *Of(user);
  if (e.kind == VN_EVENT_WORD_BOUNDARY) {
    ++c.words;
    std::lock_guard lock(c.host_lock); // blocks while the host holds it
  }
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
    WithinTime(4s, [&] { SpeakVNUTF8(kLongSentence, &WaitForTheHost, Pass(c)); });
    WithinTime(2s, [] { EXPECT_EQ(StopSpeak(), 1); });
    WithinTime(2s, [] { EXPECT_EQ(ReleaseLib(), 1); });
  }
  // Once the host lets go, the released engine finishes and a new one works.
  Calls d;
  SpeakVNUTF8("Năm.", &Count, Pass(d));
  EXPECT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_EQ(d.words, 1);
}

void VNTTS_CALL CountSlowly(uintptr_t user, VNEvent e) {
  ++Of(user)->entered;
  std::this_thread::sleep_for(20ms);
  --Of(user)->entered;
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

void VNTTS_CALL UnregisterItself(uintptr_t user, VNEvent e) {
  Count(user, e);
  if (e.kind == VN_EVENT_WORD_BOUNDARY) {
    EXPECT_EQ(SetNotifyFunc(nullptr, 0), nullptr);
    Of(user)->unregistered = true;
  }
}

TEST_F(VoiceTest, ACallbackThatUnregistersItselfIsNotCalledAgain) {
  Calls c;
  SpeakVNUTF8(kLongSentence, &UnregisterItself, Pass(c));
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(c.words, 1);
  EXPECT_EQ(c.late, 0);
  EndSpeech();
}

// Client events added while a sentence plays fire (in the next sentence, being at position 0)
// and stay in the list; a list emptied while a sentence plays stays empty.
TEST_F(VoiceTest, EventListEditsDuringSpeechLast) {
  Calls c;
  VNEvent draw{};
  draw.kind = VN_EVENT_DRAW;
  EXPECT_EQ(AddVNEvent(&draw), 1u);
  SpeakVNUTF8("Một hai ba bốn năm. Sáu bảy.", &Count, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 1; }, 10s));
  RemoveAllEvents();
  VNEvent mine{};
  mine.kind = VN_EVENT_RESERVED;
  EXPECT_EQ(AddVNEvent(&mine), 1u);
  ASSERT_EQ(VNWaitUntilDone(20000), 1);
  int draws = 0, reserved = 0;
  for (std::uint32_t k : c.kinds) {
    draws += k == VN_EVENT_DRAW;
    reserved += k == VN_EVENT_RESERVED;
  }
  EXPECT_EQ(draws, 1) << "fired at the first sentence's start, then removed";
  EXPECT_EQ(reserved, 1) << "added during the first sentence, fired in the second";
  EXPECT_EQ(AddVNEvent(&mine), 2u) << "the event added during speech is still in the list";
}

void VNTTS_CALL AddEventFromTheCallback(uintptr_t user, VNEvent e) {
  Count(user, e);
  if (e.kind == VN_EVENT_SENTENCE_BOUNDARY && Of(user)->result < 0) {
    Of(user)->result = 0;
    VNEvent mine{};
    mine.kind = VN_EVENT_RESERVED;
    AddVNEvent(&mine);
  }
}

TEST_F(VoiceTest, EventsAddedFromTheCallbackFire) {
  Calls c;
  SpeakVNUTF8("Một hai. Ba bốn.", &AddEventFromTheCallback, Pass(c));
  ASSERT_EQ(VNWaitUntilDone(20000), 1);
  int reserved = 0;
  for (std::uint32_t k : c.kinds)
    reserved += k == VN_EVENT_RESERVED;
  EXPECT_EQ(reserved, 1) << "the first sentence's one fires in the second";
}

// The 44-byte header of a 16-bit 22050 Hz WAV file with `data` bytes of samples.
void WriteWaveHeader(std::ofstream& out, std::uint16_t channels, std::uint32_t data) {
  const std::uint32_t riff = 36 + data, rate = 22050, byte_rate = rate * 2 * channels;
  const std::uint16_t pcm = 1, block = 2 * channels, bits = 16;
  const std::uint32_t fmt_size = 16;
  auto put = [&](const auto& v) { out.write(reinterpret_cast<const char*>(&v), sizeof v); };
  out << "RIFF";
  put(riff);
  out << "WAVEfmt ";
  for (auto v : {fmt_size, std::uint32_t{pcm} | std::uint32_t{channels} << 16, rate, byte_rate,
                 std::uint32_t{block} | std::uint32_t{bits} << 16})
    put(v);
  out << "data";
  put(data);
}

// A WAV file of `seconds` of silence, mono.
std::filesystem::path SilentWave(const std::filesystem::path& dir, int seconds) {
  const std::uint32_t data = 22050 * 2 * static_cast<std::uint32_t>(seconds);
  const auto path = dir / "silence.wav";
  std::ofstream out(path, std::ios::binary);
  WriteWaveHeader(out, 1, data);
  out << std::string(data, '\0');
  return path;
}

// The wave buffer is replaced and played while a sentence plays (at a volume below full, so the
// device copies what it plays): the sentence keeps its own sound, the second play is refused.
TEST_F(VoiceTest, LoadingAndPlayingTheWaveDuringSpeechIsSafe) {
  const auto dir =
      std::filesystem::temp_directory_path() / ("vntts-host-wave-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const auto wave = SilentWave(dir, 3);
  EXPECT_EQ(SetVolume(0x80008000u), 0);
  Calls c;
  SpeakVNUTF8(kLongSentence, &Count, Pass(c));
  ASSERT_TRUE(Eventually([&] { return c.words >= 1; }, 10s));
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(LoadFileWave(wave.c_str()), 1);
    std::this_thread::sleep_for(20ms);
  }
  EXPECT_EQ(PlayWave(0, 100), 4) << "one stream at a time";
  EndSpeech();
  std::filesystem::remove_all(dir);
}

void VNTTS_CALL SpeakAgainOnEveryWord(uintptr_t user, VNEvent e) {
  Count(user, e);
  if (e.kind == VN_EVENT_WORD_BOUNDARY) SpeakVNUTF8Ex("Một hai.", 0, &SpeakAgainOnEveryWord, user);
}

// The callback starts speech while the host does too: one speech wins, nothing breaks.
TEST_F(VoiceTest, SpeechStartedFromTheCallbackAndTheHostAtOnce) {
  Calls c;
  const auto until = std::chrono::steady_clock::now() + 1500ms;
  while (std::chrono::steady_clock::now() < until) {
    SpeakVNUTF8Ex("Ba bốn năm.", 0, &SpeakAgainOnEveryWord, Pass(c));
    std::this_thread::sleep_for(30ms);
  }
  EXPECT_GT(c.words, 5);
  EndSpeech();
}

class SpeechToFile : public VoiceTest {
protected:
  void SetUp() override {
    VoiceTest::SetUp();
    dir_ = std::filesystem::temp_directory_path() / ("vntts-file-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override {
    VoiceTest::TearDown();
    std::filesystem::remove_all(dir_);
  }
  std::string Path(const char* name) const { return (dir_ / name).string(); }
  std::filesystem::path dir_;
};

// The next call deletes the file the previous one created, never a file it only tried.
TEST_F(SpeechToFile, OnlyAFileItCreatedIsDeleted) {
  std::ofstream(Path("notes.txt")) << "the user's notes";
  ASSERT_EQ(SaveVNToWaveFile("Một.", Path("notes.txt").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_EQ(Shown().size(), 1u) << "not a WAV file: refused, once";
  ASSERT_EQ(SaveVNToWaveFile("Hai.", Path("one.wav").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_TRUE(std::filesystem::exists(Path("notes.txt")));
  ASSERT_EQ(SaveVNToWaveFile("Ba.", Path("two.wav").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(10000), 1);
  EXPECT_FALSE(std::filesystem::exists(Path("one.wav")));
  EXPECT_TRUE(std::filesystem::exists(Path("two.wav")));
}

// A file that cannot grow any more (its data at the 4 GB limit) ends the speech with one
// message, not one per sentence.
TEST_F(SpeechToFile, AFileAtTheSizeLimitEndsTheSpeechWithOneMessage) {
  const std::uint32_t data = 0xFFFFFF00u;
  {
    std::ofstream out(Path("full.wav"), std::ios::binary);
    WriteWaveHeader(out, 2, data);
  }
  std::filesystem::resize_file(Path("full.wav"), 44 + std::uintmax_t{data}); // sparse
  ASSERT_EQ(SaveVNToWaveFile("Một. Hai. Ba. Bốn.", Path("full.wav").c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(20000), 1);
  EXPECT_EQ(Shown().size(), 1u);
}

} // namespace
} // namespace vntts::test
