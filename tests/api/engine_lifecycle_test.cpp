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

TEST_F(EngineLifecycle, ExportsThatNeedAnEngineReturnZeroAndMakeNone) {
  for (const auto& call : kNeedsEngine) {
    EXPECT_EQ(call.run(), 0u) << call.name;
    EXPECT_FALSE(EngineExisted()) << call.name << " made an engine";
  }
  EXPECT_TRUE(Shown().empty());
}

TEST_F(EngineLifecycle, ExportsThatCreateMakeTheEngineOnFirstUse) {
  for (const auto& call : kCreatesEngine) {
    call.run();
    EXPECT_TRUE(EngineExisted()) << call.name << " did not make an engine";
  }
}

TEST_F(EngineLifecycle, LaterCallsUseTheSameEngine) {
  SetRateSpeech(1234);
  EXPECT_EQ(GetRateSpeech(), 1234u);
  EXPECT_EQ(GetVolumeRange(nullptr, nullptr), nullptr); // null outputs are skipped, not written
  EXPECT_EQ(GetRateSpeech(), 1234u);
}

TEST_F(EngineLifecycle, ReleaseLibGivesOneThenZero) {
  GetDefaultVolume();
  EXPECT_EQ(ReleaseLib(), 1);
  EXPECT_EQ(ReleaseLib(), 0);
}

TEST_F(EngineLifecycle, AFreshEngineAfterReleaseStartsFromTheDefaults) {
  EXPECT_EQ(SetRateSpeech(0), 5000u);
  EXPECT_EQ(GetRateSpeech(), 0u);
  EXPECT_EQ(ReleaseLib(), 1);
  EXPECT_EQ(GetRateSpeech(), 5000u);
}

TEST_F(EngineLifecycle, LoadFileWaveWithAnEmptyPathReturnsZeroBeforeMakingAnEngine) {
  EXPECT_EQ(LoadFileWave(""), 0);
  EXPECT_EQ(LoadFileWave(nullptr), 0);
  EXPECT_FALSE(EngineExisted());
  EXPECT_TRUE(Shown().empty());
}

TEST_F(EngineLifecycle, GetWaveInfoWithoutAnEngineLeavesItsOutputsUntouched) {
  std::uint16_t channels = 0xBEEF, bits = 0xCAFE;
  std::uint32_t rate = 0xDEADBEEF;
  EXPECT_EQ(GetWaveInfo(&channels, &rate, &bits), 0);
  EXPECT_EQ(channels, 0xBEEF);
  EXPECT_EQ(rate, 0xDEADBEEFu);
  EXPECT_EQ(bits, 0xCAFE);
  EXPECT_FALSE(EngineExisted());
}

TEST_F(EngineLifecycle, GetWaveInfoWithAnEngineWritesAndAcceptsNullOutputs) {
  GetVolume();
  std::uint16_t channels = 0xBEEF;
  EXPECT_EQ(GetWaveInfo(&channels, nullptr, nullptr), 1);
  EXPECT_NE(channels, 0xBEEF);
}

TEST_F(EngineLifecycle, NullTextsAreEmptyTexts) {
  SpeakVN(nullptr, nullptr, 0);
  SpeakVNUTF8(nullptr, nullptr, 0);
  SpeakVNASCII(nullptr, nullptr, 0);
  EXPECT_EQ(AddVNEvent(nullptr), 0u);
  EXPECT_EQ(IsPlaying(), 0);
  EXPECT_TRUE(EngineExisted());
}

// The engine cannot be made: "Out off memory !!!", the failure value, no engine; the next call
// tries again.
class OutOfMemory : public LibraryTest {
protected:
  void FailEngineAllocation() { setenv("VNTTS_FAIL_ALLOCATION", "engine", 1); }
  void AllowAllocation() { unsetenv("VNTTS_FAIL_ALLOCATION"); }
  const ShownMessage kOutOfMemory{"Out off memory !!!", "", VN_MESSAGE_ERROR};
};

TEST_F(OutOfMemory, EveryCreatingExportShowsTheMessageAndReturnsItsFailureValue) {
  FailEngineAllocation();
  for (const auto& call : kCreatesEngine) {
    ClearShown();
    EXPECT_EQ(call.run(), 0u) << call.name;
    EXPECT_EQ(Shown(), std::vector<ShownMessage>{kOutOfMemory}) << call.name;
    EXPECT_FALSE(EngineExisted()) << call.name;
  }
}

TEST_F(OutOfMemory, RangeOutputsAreNotWrittenWhenNoEngineCanBeMade) {
  FailEngineAllocation();
  std::uint32_t lo = 7, hi = 8;
  EXPECT_EQ(GetVolumeRange(&lo, &hi), nullptr);
  EXPECT_EQ(lo, 7u);
  EXPECT_EQ(hi, 8u);
}

TEST_F(OutOfMemory, TheNextCallTriesAgain) {
  FailEngineAllocation();
  EXPECT_EQ(GetDefaultVolume(), 0u);
  AllowAllocation();
  EXPECT_EQ(GetDefaultVolume(), 13107u);
  EXPECT_TRUE(EngineExisted());
}

TEST_F(OutOfMemory, AnExistingEngineIsUsedWithoutAllocating) {
  GetVolume();
  FailEngineAllocation();
  ClearShown();
  EXPECT_EQ(GetDefaultPitch(), 0x10000u);
  EXPECT_TRUE(Shown().empty());
}

TEST_F(OutOfMemory, WithoutAHandlerTheMessageGoesToStandardError) {
  VNSetMessageHandler(nullptr, 0);
  FailEngineAllocation();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MuteVolume(), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Out off memory !!!\n");
}

} // namespace
} // namespace vntts::test
