// SPDX-License-Identifier: MIT
// What every export promises the host whatever it is given: which make the engine and which
// need it, how it ends, what the message handler hears when none can be made, the failure value
// for null pointers, impossible ranges and paths that cannot be written, and the window
// exports' reason where no window can be shown.
#include <algorithm>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {

struct Call {
  const char* text;
  std::uint64_t (*run)();
};

template <class T> std::uint64_t Widen(T value) {
  if constexpr (std::is_pointer_v<T>)
    return reinterpret_cast<std::uintptr_t>(value);
  else
    return static_cast<std::uint64_t>(value);
}

// An export's call as written, with its result widened; a void call is written `(Call(), 0)`.
// clang-format off
#define CALL(...) Call{#__VA_ARGS__, [] { return Widen(__VA_ARGS__); }}
// clang-format on

// What the calls write through.
std::uint16_t out_channels, out_bits;
std::uint32_t out_rate, out_low, out_high, out_length;
VNEvent out_event;
char out_word[VN_WORD_BUFFER_BYTES];

int VNTTS_CALL TakeNothing(uintptr_t, const int16_t*, uint32_t, const VNSynthesisEvent*, uint32_t) {
  return 1;
}

// Calls that answer 0 and make no engine: they need one, or refuse their arguments first.
const Call kMakeNoEngine[] = {
    CALL(PauseSpeak()),
    CALL(ResumeSpeak()),
    CALL(PauseResumeSpeak()),
    CALL(StopSpeak()),
    CALL(PlayWave(0, 100)),
    CALL((PausePlayWave(), 0)),
    CALL((ResumePlayWave(), 0)),
    CALL((StopPlayWave(), 0)),
    CALL(IsPlaying()),
    CALL(GetCountSample()),
    CALL(GetDataBuf()),
    CALL(ReleaseLib()),
    CALL(GetWaveInfo(&out_channels, &out_rate, &out_bits)),
    CALL(LoadFileWave("")),
    CALL(VNOpenOutput(nullptr)),
    CALL(VNOpenOutput("")),
    CALL((VNCloseOutput(0), 0)),
    CALL(VNTextRangeToUTF8(nullptr, 0, 1, nullptr, nullptr)),
    CALL(VNSynthesizeUTF8(nullptr, 0, &TakeNothing, 0)),
    CALL(VNSynthesizeUTF8("a", 0, nullptr, 0)),
};

// Calls that make the engine on first use (null texts are empty texts). The dialogs (SpeakDlg,
// Record, EditDefinition, Tools) are left out: they open windows.
const Call kMakeTheEngine[] = {
    CALL((SpeakVN(nullptr, nullptr, 0), 0)),
    CALL((SpeakVNEx("", 0, nullptr, 0), 0)),
    CALL((SpeakVNUTF8(nullptr, nullptr, 0), 0)),
    CALL((SpeakVNUTF8Ex("", 0, nullptr, 0), 0)),
    CALL((SpeakVNASCII(nullptr, nullptr, 0), 0)),
    CALL((SpeakVNASCIIEx("", 0, nullptr, 0), 0)),
    CALL(LoadFileWave("/nonexistent/vntts/lifecycle.wav")),
    CALL(GetBufOfWord("", out_word, &out_length)),
    CALL(SetNotifyFunc(nullptr, 0)),
    CALL(AddVNEvent(&out_event)),
    CALL((RemoveAllEvents(), 0)),
    CALL(GetVolume()),
    CALL(GetDefaultVolume()),
    CALL(MuteVolume()),
    CALL(SetVolume(0xFFFFFFFFu)),
    CALL(GetVolumeRange(&out_low, &out_high)),
    CALL(GetPitch()),
    CALL(GetDefaultPitch()),
    CALL(SetPitch(0x10000)),
    CALL(GetPitchRange(&out_low, &out_high)),
    CALL(GetRateSpeech()),
    CALL(GetDefaultRateSpeech()),
    CALL(SetRateSpeech(5000)),
    CALL(GetRateSpeechRange(&out_low, &out_high)),
    CALL((ResetAllToDefault(), 0)),
    CALL(VNGetSpeed()),
};

// Calls that make the engine and answer 0 all the same: nothing they could do.
const Call kRefused[] = {
    CALL(SaveFileWave(nullptr)),
    CALL(SaveFileWave("")),
    CALL(SaveFileWave("/nonexistent/vntts/x.wav")),
    CALL(RecordToFile(nullptr, 50)),
    CALL(RecordToFile("", 50)),
    CALL(RecordToFile("/nonexistent/vntts/x.wav", 50)),
    CALL(GetBufOfWord("a", nullptr, &out_length)),
    CALL(GetBufOfWord(nullptr, out_word, &out_length)),
    CALL(GetPitchRange(nullptr, nullptr)),
    CALL(SetVNAudioFormat(0xFFFFFFFFu)),
    CALL(AddVNEvent(nullptr)),
};

using EngineLifecycle = LibraryTest;

// Each call of the first table leaves no engine (and GetWaveInfo its outputs as they were);
// each of the others makes one, which later calls share until ReleaseLib, after which a fresh
// one starts from the defaults.
TEST_F(EngineLifecycle, WhichExportsMakeTheEngineAndWhichNeedIt) {
  out_channels = 0xBEEF;
  for (const Call& call : kMakeNoEngine) {
    EXPECT_EQ(call.run(), 0u) << call.text;
    EXPECT_FALSE(EngineExisted()) << call.text << " made an engine";
  }
  EXPECT_EQ(out_channels, 0xBEEF);
  EXPECT_EQ(VNWaitUntilDone(0), 1) << "nothing is speaking";
  EXPECT_NE(VNGetVersion(), nullptr);
  EXPECT_FALSE(EngineExisted());
  EXPECT_TRUE(Shown().empty());
  for (const Call& call : kMakeTheEngine) {
    call.run();
    EXPECT_TRUE(EngineExisted()) << call.text << " did not make an engine";
  }
  for (const Call& call : kRefused) {
    EXPECT_EQ(call.run(), 0u) << call.text;
    EXPECT_TRUE(EngineExisted()) << call.text << " did not make an engine";
  }
  EXPECT_EQ(out_length, 0u) << "GetBufOfWord without a word";
  EXPECT_EQ(SetRateSpeech(0), 5000u);
  EXPECT_EQ(GetWaveInfo(&out_channels, nullptr, nullptr), 1) << "null outputs are skipped";
  EXPECT_EQ(GetRateSpeechRange(nullptr, &out_high), nullptr);
  EXPECT_EQ(out_high, 5000u);
  EXPECT_EQ(VNTextRangeToUTF8("ạ", 0, 9, nullptr, nullptr), 1);
  EXPECT_EQ(GetRateSpeech(), 0u) << "the same engine";
  EXPECT_EQ(ReleaseLib(), 1);
  EXPECT_EQ(ReleaseLib(), 0);
  EXPECT_EQ(GetRateSpeech(), 5000u) << "a fresh engine";
  // One very long word is not tried cut by cut as two syllables: refused at once.
  std::string word;
  for (int i = 0; i < 32000; ++i)
    word += "ba";
  const Deadline deadline(2);
  EXPECT_EQ(GetBufOfWord(word.c_str(), out_word, &out_length), 0);
}

int handed_over = 0;
void VNTTS_CALL HandOverToStandardError(uintptr_t, const char*, const char*, int) {
  ++handed_over;
  VNSetMessageHandler(nullptr, 0); // from inside the handler: must not deadlock
}

// The engine cannot be made: "Out off memory !!!", the failure value, no engine, range outputs
// untouched; the next call tries again, and an existing engine needs no allocation. Without a
// handler the message goes to standard error.
TEST_F(EngineLifecycle, WhenNoEngineCanBeMadeEveryCreatingExportFails) {
  const ShownMessage out_of_memory{"Out off memory !!!", "", VN_MESSAGE_ERROR};
  setenv("VNTTS_FAIL_ALLOCATION", "engine", 1);
  out_low = 7;
  std::vector<Call> calls(std::begin(kMakeTheEngine), std::end(kMakeTheEngine));
  calls.insert(calls.end(), std::begin(kRefused), std::end(kRefused));
  for (const Call& call : calls) {
    ClearShown();
    EXPECT_EQ(call.run(), 0u) << call.text;
    EXPECT_EQ(Shown(), std::vector<ShownMessage>{out_of_memory}) << call.text;
    EXPECT_FALSE(EngineExisted()) << call.text;
  }
  EXPECT_EQ(out_low, 7u) << "range outputs untouched";
  unsetenv("VNTTS_FAIL_ALLOCATION");
  EXPECT_EQ(GetDefaultPitch(), 0x10000u);
  setenv("VNTTS_FAIL_ALLOCATION", "engine", 1);
  ClearShown();
  EXPECT_EQ(GetDefaultPitch(), 0x10000u);
  EXPECT_TRUE(Shown().empty());
  ReleaseLib();
  VNSetMessageHandler(&HandOverToStandardError, 0);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MuteVolume(), 0); // to the handler, which hands over
  EXPECT_EQ(MuteVolume(), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Out off memory !!!\n");
  EXPECT_EQ(handed_over, 1);
}

// First calls racing from four threads make one engine: their events land in one list.
TEST_F(EngineLifecycle, RacingFirstCallsMakeOneEngine) {
  for (int round = 0; round < 5; ++round) {
    std::vector<std::uint32_t> counts(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < counts.size(); ++i)
      threads.emplace_back([&counts, i] {
        VNEvent event{};
        counts[i] = AddVNEvent(&event);
      });
    for (auto& t : threads)
      t.join();
    std::sort(counts.begin(), counts.end());
    EXPECT_EQ(counts, (std::vector<std::uint32_t>{1, 2, 3, 4}));
    EXPECT_EQ(ReleaseLib(), 1);
  }
}

using WindowExportsTest = LibraryTest;

TEST_F(WindowExportsTest, WithoutTheWindowModuleOrADisplayTheyFail) {
  const bool module_built = std::filesystem::exists(VNTTS_BINARY_DIR "/bin/libvntts-ui.so");
  struct Case {
    const char* module; // VNTTS_UI_MODULE, or null for the one built
    const char* display;
    const char* said;
  };
  const Case cases[] = {
      {"/no/such/folder/libvntts-ui.so", nullptr, "The window module could not be loaded: "},
      {nullptr, nullptr, "No display to show the window on (DISPLAY is not set)."},
      // A display that does not answer is no display either.
      {nullptr, ":97", "No display to show the window on (cannot connect to DISPLAY :97)."},
  };
  unsetenv("QT_QPA_PLATFORM");
  unsetenv("WAYLAND_DISPLAY");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.said);
    if (!c.module && !module_built) continue;
    c.module ? setenv("VNTTS_UI_MODULE", c.module, 1) : unsetenv("VNTTS_UI_MODULE");
    c.display ? setenv("DISPLAY", c.display, 1) : unsetenv("DISPLAY");
    GetVolume(); // the engine first: what it says about the voice is not the windows' concern
    ClearShown();
    EXPECT_EQ(SpeakDlg(0, "Xin chao"), 0);
    EXPECT_EQ(::Record(0), 0);
    EXPECT_EQ(RecordToFile("take.wav", 0), 0);
    EXPECT_EQ(::Tools(0), 0);
    EditDefinition(0);
    const auto shown = Shown();
    ASSERT_EQ(shown.size(), 5u) << ::testing::PrintToString(shown);
    for (const ShownMessage& m : shown) {
      EXPECT_TRUE(m.text.starts_with(c.said)) << m.text;
      EXPECT_EQ(m.icon, VN_MESSAGE_ERROR);
    }
  }
  unsetenv("VNTTS_UI_MODULE");
  unsetenv("DISPLAY");
}

} // namespace
} // namespace vntts::test
