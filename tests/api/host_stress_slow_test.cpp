// SPDX-License-Identifier: MIT
// Hosts at their worst, run under the asan and tsan presets as well: ten thousand random
// actions from the host's thread and from inside the notification function, and a hundred
// megabytes of text without a blank.
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <random>

#include "library_fixture.h"

namespace vntts::test {
namespace {

constexpr int kActions = 10000;
constexpr unsigned kActionBoundSeconds = 15; // a speak call may wait 1 s, a sanitizer slows all

const char* const kTexts[] = {
    "Xin chào.",
    "Một hai ba.",
    "Hôm nay trời đẹp, chúng ta đi chơi nhé!",
    "",
    "Ngày 2/9/1945, Hà Nội.",
    "Giá 25.000 đồng một ký.",
    "ok ok ok",
    "A.B.C.D.E",
};

std::ptrdiff_t CountEntries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

long ResidentMegabytes() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0, resident = 0;
  statm >> pages >> resident;
  return resident * sysconf(_SC_PAGESIZE) / (1 << 20);
}

struct Stress {
  std::mutex rng_mutex;
  std::mt19937 rng{20240611};
  std::filesystem::path dir;
  std::atomic<int> callbacks{0}, from_callbacks{0};

  unsigned Random(unsigned n) {
    std::lock_guard lock(rng_mutex);
    return rng() % n;
  }
  const char* Text() { return kTexts[Random(std::size(kTexts))]; }
  std::string File() { return (dir / ("out" + std::to_string(Random(3)) + ".wav")).string(); }
};

void VNTTS_CALL OnEvent(uintptr_t user, VNEvent e);
uintptr_t User(Stress& s) {
  return reinterpret_cast<uintptr_t>(&s);
}

// What a host does. The callback does only the first kFromCallback: no pause from there, as a
// pause holds a PlayWave on the host's thread until the host resumes it.
constexpr unsigned kFromCallback = 9;
const std::function<void(Stress&)> kActs[] = {
    [](Stress&) { StopSpeak(); },
    // Waits a second when it interrupts speech: a fifth of the time.
    [](Stress& s) {
      if (s.Random(5) == 0) SpeakVNUTF8(s.Text(), &OnEvent, User(s));
    },
    [](Stress&) { ResumeSpeak(); },
    [](Stress& s) {
      VNEvent e{VN_EVENT_DRAW, s.Random(20000), 0, 0, {}};
      AddVNEvent(&e);
    },
    [](Stress&) { RemoveAllEvents(); },
    [](Stress& s) { SetNotifyFunc(s.Random(2) ? &OnEvent : nullptr, User(s)); },
    [](Stress& s) { SpeakVNUTF8Ex(s.Text(), 0, &OnEvent, User(s)); },
    [](Stress& s) { SetRateSpeech(s.Random(5001)); },
    [](Stress& s) {
      if (s.Random(20) == 0) ReleaseLib();
    },
    [](Stress&) { PauseSpeak(); },
    [](Stress& s) { SaveVNToWaveFile(s.Text(), s.File().c_str()); },
    [](Stress&) { PauseResumeSpeak(); },
    [](Stress& s) { SetVolume(s.Random(65536) * 0x10001u); },
    [](Stress& s) { SetVNAudioFormat(8 + s.Random(28)); },
    [](Stress&) { IsPlaying(), GetCountSample(), GetDataBuf(); },
    [](Stress& s) { VNWaitUntilDone(s.Random(20)); },
    [](Stress& s) { LoadFileWave(s.File().c_str()); },
    [](Stress&) { PlayWave(0, 50); },
    [](Stress&) { StopPlayWave(); },
    [](Stress&) {
      static thread_local std::vector<char> buffer(VN_WORD_BUFFER_BYTES);
      uint32_t length = 0;
      GetBufOfWord("ba", buffer.data(), &length);
    },
    [](Stress&) { ResetAllToDefault(); },
};

void VNTTS_CALL OnEvent(uintptr_t user, VNEvent) {
  auto& s = *reinterpret_cast<Stress*>(user);
  ++s.callbacks;
  if (s.Random(25) != 0) return;
  ++s.from_callbacks;
  kActs[s.Random(kFromCallback)](s);
}

// Nothing may crash or hang (a deadline ends the program when one action takes longer than its
// bound), and threads, open files and memory must not grow with the number of actions.
TEST_F(VoiceTest, TenThousandRandomHostActions) {
  Stress s;
  s.dir = folder_.path();
  std::ptrdiff_t threads = 0, files = 0;
  [[maybe_unused]] long memory = 0; // unread under AddressSanitizer
  for (int i = 0; i < kActions; ++i) {
    if (i == 1000) { // after the caches and the first engine have settled
      ReleaseLib();
      // A released engine whose worker was in a callback goes with the next call.
      std::this_thread::sleep_for(200ms);
      IsPlaying();
      threads = CountEntries("/proc/self/task");
      files = CountEntries("/proc/self/fd");
      memory = ResidentMegabytes();
    }
    const unsigned action = s.Random(std::size(kActs));
    const Deadline deadline(kActionBoundSeconds);
    kActs[action](s);
  }
  SetNotifyFunc(nullptr, 0);
  EXPECT_EQ(VNWaitUntilDone(20000), 1);
  ReleaseLib();
  std::this_thread::sleep_for(200ms);
  IsPlaying();

  EXPECT_GT(s.callbacks, 1000) << "the callbacks had their share";
  EXPECT_GT(s.from_callbacks, 20);
  EXPECT_LE(CountEntries("/proc/self/task"), threads);
  EXPECT_LE(CountEntries("/proc/self/fd"), files);
#ifndef __SANITIZE_ADDRESS__
  // Under AddressSanitizer freed memory waits in its quarantine (256 MB); its leak check at exit
  // takes the place of this bound there.
  EXPECT_LT(ResidentMegabytes() - memory, 30);
#endif
}

long PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

// The speak call returns after copying the text (conversion and reading run on the speech's
// thread), a stop is honoured at once however far the reading has got, and memory stays near
// the text's own size.
TEST_F(VoiceTest, AHugeTextWithoutBlanksNeitherBlocksNorHoldsTheStop) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "times and memory mean nothing under a sanitizer";
#endif
  std::string text(100u << 20, 'a');
  for (std::size_t i = 0; i < text.size(); i += 7)
    text[i] = static_cast<char>('b' + i % 20);
  GetVolume();
  const long before = PeakMegabytes();
  for (int round = 0; round < 2; ++round) {
    const auto start = std::chrono::steady_clock::now();
    SpeakVNUTF8(text.c_str(), nullptr, 0);
    const auto spoke = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(round * 300ms); // once while converting, once while reading
    const auto stopping = std::chrono::steady_clock::now();
    EXPECT_EQ(StopSpeak(), 1);
    // The call copies the text (slow page faults on some machines): far below the seconds the
    // conversion and the reading of such a text take.
    EXPECT_LT(spoke - start, 3s);
    EXPECT_LT(std::chrono::steady_clock::now() - stopping, 100ms);
  }
  EXPECT_EQ(VNWaitUntilDone(30000), 1);
  // The caller's own copy, the engine's copy and its conversion: no more.
  EXPECT_LT(PeakMegabytes() - before, 350);
}

} // namespace
} // namespace vntts::test
