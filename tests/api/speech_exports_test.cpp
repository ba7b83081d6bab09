// The speak exports end to end with the default voice over the null sink (real pace, no sound):
// files, callbacks, stopping and releasing mid-speech. Skipped when the build made no voice.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "library_fixture.h"

namespace vntts::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

fs::path VoiceFolder() {
  if (const char* env = std::getenv("VNTTS_DATA_DIR"); env && *env) return env;
  return VNTTS_BINARY_DIR "/bin/index";
}

// Read once at start-up: other tests of this program change the environment.
const fs::path kVoice = VoiceFolder();
const bool kVoiceFromEnvironment = std::getenv("VNTTS_DATA_DIR") != nullptr;

// 36-byte WAV header plus "data" and its size: the data size of a file the library wrote.
std::uint32_t DataBytes(const fs::path& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return 0;
  unsigned char h[44] = {};
  const bool ok = std::fread(h, 1, 44, f) == 44;
  std::fclose(f);
  return ok ? static_cast<std::uint32_t>(h[40] | h[41] << 8 | h[42] << 16 | h[43] << 24) : 0;
}

// Writing goes on in the background; the file is done once its size holds still.
void WaitForFile(const fs::path& path) {
  std::uintmax_t last = 0;
  int still = 0;
  for (int i = 0; i < 400 && still < 10; ++i) {
    std::this_thread::sleep_for(20ms);
    std::error_code ec;
    const auto size = fs::file_size(path, ec);
    still = (!ec && size == last && size > 0) ? still + 1 : 0;
    last = ec ? 0 : size;
  }
}

class SpeechExports : public LibraryTest {
protected:
  void SetUp() override {
    if (!fs::exists(kVoice / "main_dic.arr")) GTEST_SKIP() << "no default voice in " << kVoice;
    setenv("VNTTS_DATA_DIR", kVoice.c_str(), 1);
    LibraryTest::SetUp();
    dir_ = fs::temp_directory_path() / ("vntts_speech_exports_" + std::to_string(::getpid()));
    fs::create_directories(dir_);
  }
  void TearDown() override {
    LibraryTest::TearDown();
    if (!kVoiceFromEnvironment) unsetenv("VNTTS_DATA_DIR");
    if (!dir_.empty()) fs::remove_all(dir_);
  }
  fs::path dir_;
};

TEST_F(SpeechExports, SaveToWaveFileHoldsBothSentencesAndThePause) {
  const auto one = dir_ / "one.wav", two = dir_ / "two.wav";
  ASSERT_EQ(SaveVNToWaveFile("Xin chào.", one.c_str()), 1);
  WaitForFile(one);
  const auto first = DataBytes(one);
  ASSERT_GT(first, 40000u * 2) << "a word and the full stop's pause, in stereo";
  ASSERT_EQ(SaveVNToWaveFile("Xin chào. Xin chào.", two.c_str()), 1);
  WaitForFile(two);
  EXPECT_FALSE(fs::exists(one)) << "the previous output is deleted";
  EXPECT_EQ(DataBytes(two), 2 * first);
}

struct Words {
  std::atomic<int> count{0};
  std::atomic<int> after_stop{0};
  std::atomic<bool> stopped{false};
};

void VNTTS_CALL StopOnSecondWord(uintptr_t user, VNEvent e) {
  auto* w = reinterpret_cast<Words*>(user);
  if (e.kind != VN_EVENT_WORD_BOUNDARY) return;
  if (w->stopped) ++w->after_stop;
  if (++w->count == 2) {
    EXPECT_EQ(StopSpeak(), 1);
    w->stopped = true;
  }
}

TEST_F(SpeechExports, ACallbackCallingStopSpeakDoesNotDeadlock) {
  Words w;
  SpeakVNUTF8("Một hai ba bốn năm sáu bảy tám chín mười.", &StopOnSecondWord,
              reinterpret_cast<uintptr_t>(&w));
  for (int i = 0; i < 500 && !w.stopped; ++i)
    std::this_thread::sleep_for(10ms);
  ASSERT_TRUE(w.stopped);
  for (int i = 0; i < 200 && IsPlaying(); ++i)
    std::this_thread::sleep_for(10ms);
  EXPECT_EQ(IsPlaying(), 0);
  EXPECT_EQ(w.after_stop, 0);
}

TEST_F(SpeechExports, ReleaseLibDuringSpeechEndsCleanly) {
  SpeakVNUTF8("Hôm nay trời đẹp. Chúng tôi đi học. Ngày mai trời mưa.", nullptr, 0);
  for (int i = 0; i < 300 && !IsPlaying(); ++i)
    std::this_thread::sleep_for(10ms);
  EXPECT_EQ(IsPlaying(), 1);
  EXPECT_EQ(PauseSpeak(), 1);
  EXPECT_EQ(ReleaseLib(), 1);
  EXPECT_EQ(IsPlaying(), 0);
  EXPECT_EQ(StopSpeak(), 0) << "no engine any more";
}

TEST_F(SpeechExports, EmptyTextAndGetBufOfWord) {
  SpeakVNUTF8("", nullptr, 0);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(IsPlaying(), 0);
  std::vector<unsigned char> buffer(VN_WORD_BUFFER_BYTES);
  uint32_t length = 0;
  EXPECT_NE(GetBufOfWord("ba", buffer.data(), &length), 0);
  EXPECT_GT(length, 1000u);
  EXPECT_EQ(length % 2, 0u);
  EXPECT_EQ(GetBufOfWord("", buffer.data(), &length), 0);
  EXPECT_EQ(length, 0u);
}

} // namespace
} // namespace vntts::test
