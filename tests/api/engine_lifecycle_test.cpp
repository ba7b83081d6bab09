// SPDX-License-Identifier: MIT
// When the exports make the engine, when they refuse to, and how it ends.
#include <functional>
#include <string>

#include "library_fixture.h"

namespace vntts::test {
namespace {

struct Call {
  const char* name;
  std::function<std::uint64_t()> run; // the export's result, widened
};

// The exports that need an engine and never make one, with a call each.
const Call kNeedsEngine[] = {
    {"PauseSpeak", [] { return std::uint64_t(PauseSpeak()); }},
    {"ResumeSpeak", [] { return std::uint64_t(ResumeSpeak()); }},
    {"PauseResumeSpeak", [] { return std::uint64_t(PauseResumeSpeak()); }},
    {"StopSpeak", [] { return std::uint64_t(StopSpeak()); }},
    {"PlayWave", [] { return std::uint64_t(PlayWave(0, 100)); }},
    {"PausePlayWave", [] { return PausePlayWave(), std::uint64_t(0); }},
    {"ResumePlayWave", [] { return ResumePlayWave(), std::uint64_t(0); }},
    {"StopPlayWave", [] { return StopPlayWave(), std::uint64_t(0); }},
    {"IsPlaying", [] { return std::uint64_t(IsPlaying()); }},
    {"GetCountSample", [] { return std::uint64_t(GetCountSample()); }},
    {"GetDataBuf", [] { return std::uint64_t(reinterpret_cast<uintptr_t>(GetDataBuf())); }},
    {"GetWaveInfo",
     [] {
       std::uint16_t channels = 0, bits = 0;
       std::uint32_t rate = 0;
       return std::uint64_t(GetWaveInfo(&channels, &rate, &bits));
     }},
    {"ReleaseLib", [] { return std::uint64_t(ReleaseLib()); }},
};

// Exports that make the engine on first use. The dialogs (SpeakDlg, Record,
// EditDefinition, Tools) are left out: they open windows.
const Call kCreatesEngine[] = {
    {"SpeakVN", [] { return SpeakVN("", nullptr, 0), std::uint64_t(0); }},
    {"SpeakVNEx", [] { return SpeakVNEx("", 0, nullptr, 0), std::uint64_t(0); }},
    {"SpeakVNUTF8", [] { return SpeakVNUTF8("", nullptr, 0), std::uint64_t(0); }},
    {"SpeakVNUTF8Ex", [] { return SpeakVNUTF8Ex("", 0, nullptr, 0), std::uint64_t(0); }},
    {"SpeakVNASCII", [] { return SpeakVNASCII("", nullptr, 0), std::uint64_t(0); }},
    {"SpeakVNASCIIEx", [] { return SpeakVNASCIIEx("", 0, nullptr, 0), std::uint64_t(0); }},
    {"LoadFileWave",
     [] { return std::uint64_t(LoadFileWave("/nonexistent/vntts/lifecycle.wav")); }},
    {"GetBufOfWord",
     [] {
       static std::vector<char> buffer(VN_WORD_BUFFER_BYTES);
       std::uint32_t length = 0;
       return std::uint64_t(GetBufOfWord("", buffer.data(), &length));
     }},
    {"SetNotifyFunc", [] { return std::uint64_t(SetNotifyFunc(nullptr, 0) != nullptr); }},
    {"AddVNEvent",
     [] {
       VNEvent e{};
       return std::uint64_t(AddVNEvent(&e));
     }},
    {"RemoveAllEvents", [] { return RemoveAllEvents(), std::uint64_t(0); }},
    {"GetVolume", [] { return std::uint64_t(GetVolume()); }},
    {"GetDefaultVolume", [] { return std::uint64_t(GetDefaultVolume()); }},
    {"MuteVolume", [] { return std::uint64_t(MuteVolume()); }},
    {"SetVolume", [] { return std::uint64_t(SetVolume(0xFFFFFFFFu)); }},
    {"GetVolumeRange",
     [] {
       std::uint32_t lo = 0, hi = 0;
       return std::uint64_t(GetVolumeRange(&lo, &hi) != nullptr);
     }},
    {"GetPitch", [] { return std::uint64_t(GetPitch()); }},
    {"GetDefaultPitch", [] { return std::uint64_t(GetDefaultPitch()); }},
    {"SetPitch", [] { return std::uint64_t(SetPitch(0x10000)); }},
    {"GetPitchRange",
     [] {
       std::uint32_t lo = 0, hi = 0;
       return std::uint64_t(GetPitchRange(&lo, &hi) != nullptr);
     }},
    {"GetRateSpeech", [] { return std::uint64_t(GetRateSpeech()); }},
    {"GetDefaultRateSpeech", [] { return std::uint64_t(GetDefaultRateSpeech()); }},
    {"SetRateSpeech", [] { return std::uint64_t(SetRateSpeech(5000)); }},
    {"GetRateSpeechRange",
     [] {
       std::uint32_t lo = 0, hi = 0;
       return std::uint64_t(GetRateSpeechRange(&lo, &hi) != nullptr);
     }},
    {"SetVNAudioFormat", [] { return std::uint64_t(SetVNAudioFormat(12)); }},
    {"ResetAllToDefault", [] { return ResetAllToDefault(), std::uint64_t(0); }},
};

class EngineLifecycle : public LibraryTest {};

// Each export of the first table answers 0 without an engine and makes none (GetWaveInfo leaves
// its outputs as they were); each of the second makes one, which later calls share until
// ReleaseLib, after which a fresh one starts from the defaults.
TEST_F(EngineLifecycle, WhichExportsMakeTheEngineAndWhichNeedIt) {
  for (const auto& call : kNeedsEngine) {
    EXPECT_EQ(call.run(), 0u) << call.name;
    EXPECT_FALSE(EngineExisted()) << call.name << " made an engine";
  }
  std::uint16_t channels = 0xBEEF, bits = 0xCAFE;
  std::uint32_t rate = 0xDEADBEEF;
  EXPECT_EQ(GetWaveInfo(&channels, &rate, &bits), 0);
  EXPECT_EQ(channels, 0xBEEF);
  EXPECT_EQ(rate, 0xDEADBEEFu);
  EXPECT_EQ(bits, 0xCAFE);
  EXPECT_EQ(LoadFileWave(""), 0) << "refused before an engine is made";
  EXPECT_EQ(VNWaitUntilDone(0), 1) << "nothing is speaking";
  EXPECT_FALSE(EngineExisted());
  EXPECT_TRUE(Shown().empty());

  for (const auto& call : kCreatesEngine) {
    call.run();
    EXPECT_TRUE(EngineExisted()) << call.name << " did not make an engine";
  }
  EXPECT_EQ(SetRateSpeech(0), 5000u);
  EXPECT_EQ(GetWaveInfo(&channels, nullptr, nullptr), 1) << "null outputs are skipped";
  EXPECT_EQ(GetRateSpeech(), 0u) << "the same engine";
  EXPECT_EQ(ReleaseLib(), 1);
  EXPECT_EQ(ReleaseLib(), 0);
  EXPECT_EQ(GetRateSpeech(), 5000u) << "a fresh engine";
}

TEST_F(EngineLifecycle, NullTextsAreEmptyTexts) {
  SpeakVN(nullptr, nullptr, 0);
  SpeakVNUTF8(nullptr, nullptr, 0);
  SpeakVNASCII(nullptr, nullptr, 0);
  EXPECT_EQ(AddVNEvent(nullptr), 0u);
  EXPECT_EQ(IsPlaying(), 0);
  EXPECT_TRUE(EngineExisted());
}

// The engine cannot be made: "Out off memory !!!", the failure value, no engine, range outputs
// untouched; the next call tries again, and an existing engine needs no allocation.
TEST_F(EngineLifecycle, WhenNoEngineCanBeMadeEveryCreatingExportFails) {
  const ShownMessage out_of_memory{"Out off memory !!!", "", VN_MESSAGE_ERROR};
  setenv("VNTTS_FAIL_ALLOCATION", "engine", 1);
  for (const auto& call : kCreatesEngine) {
    ClearShown();
    EXPECT_EQ(call.run(), 0u) << call.name;
    EXPECT_EQ(Shown(), std::vector<ShownMessage>{out_of_memory}) << call.name;
    EXPECT_FALSE(EngineExisted()) << call.name;
  }
  std::uint32_t lo = 7, hi = 8;
  EXPECT_EQ(GetVolumeRange(&lo, &hi), nullptr);
  EXPECT_EQ(lo, 7u);
  EXPECT_EQ(hi, 8u);
  unsetenv("VNTTS_FAIL_ALLOCATION");
  EXPECT_EQ(GetDefaultVolume(), 13107u);
  setenv("VNTTS_FAIL_ALLOCATION", "engine", 1);
  ClearShown();
  EXPECT_EQ(GetDefaultPitch(), 0x10000u);
  EXPECT_TRUE(Shown().empty());
  ReleaseLib();
  VNSetMessageHandler(nullptr, 0);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MuteVolume(), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Out off memory !!!\n")
      << "without a handler the message goes to standard error";
}

} // namespace
} // namespace vntts::test
