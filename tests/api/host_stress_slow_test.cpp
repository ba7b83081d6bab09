// SPDX-License-Identifier: MIT
// Ten thousand random host actions, from the host's thread and from inside the notification
// function: speak, speak to a file, stop, pause, resume, settings, events, the callback, the
// wave, release. Nothing may crash or hang (a watchdog ends the program when one action takes
// longer than its bound), and threads, open files and memory must not grow with the number of
// actions. Run under the asan and tsan presets as well.
#include <dirent.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <random>

#include "library_fixture.h"

namespace vntts::test {
namespace {

using namespace std::chrono_literals;

constexpr int kActions = 10000;
constexpr auto kActionBound = 15s; // a speak call may wait 1 s, a sanitizer slows all down

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

std::size_t CountEntries(const char* folder) {
  std::size_t n = 0;
  if (DIR* d = opendir(folder)) {
    while (readdir(d))
      ++n;
    closedir(d);
  }
  return n;
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
  std::atomic<int> callbacks{0};
  std::atomic<int> from_callbacks{0};

  int Random(int n) {
    std::lock_guard lock(rng_mutex);
    return static_cast<int>(rng() % static_cast<unsigned>(n));
  }
  const char* Text() { return kTexts[Random(std::size(kTexts))]; }
  std::string File() { return (dir / ("out" + std::to_string(Random(3)) + ".wav")).string(); }
};

void VNTTS_CALL OnEvent(uintptr_t user, VNEvent e);

// One action a host does. Those the callback may do are the first `kFromCallback`.
constexpr int kFromCallback = 9;
void Act(Stress& s, int action) {
  VNEvent event{};
  switch (action) {
  case 0:
    StopSpeak();
    break;
  case 1: // waits a second when it interrupts speech: a fifth of the time
    if (s.Random(5) == 0) SpeakVNUTF8(s.Text(), &OnEvent, reinterpret_cast<uintptr_t>(&s));
    break;
  case 2:
    ResumeSpeak();
    break;
  case 3:
    event.kind = VN_EVENT_DRAW;
    event.position = static_cast<uint32_t>(s.Random(20000));
    AddVNEvent(&event);
    break;
  case 4:
    RemoveAllEvents();
    break;
  case 5:
    SetNotifyFunc(s.Random(2) ? &OnEvent : nullptr, reinterpret_cast<uintptr_t>(&s));
    break;
  case 6:
    SpeakVNUTF8Ex(s.Text(), 0, &OnEvent, reinterpret_cast<uintptr_t>(&s));
    break;
  case 7:
    SetRateSpeech(static_cast<uint32_t>(s.Random(5001)));
    break;
  case 8:
    if (s.Random(20) == 0) ReleaseLib();
    break;
  case 9:
    PauseSpeak();
    break;
  case 10:
    SaveVNToWaveFile(s.Text(), s.File().c_str());
    break;
  case 11:
    PauseResumeSpeak();
    break;
  case 12:
    SetVolume(static_cast<uint32_t>(s.Random(65536)) * 0x10001u);
    break;
  case 13:
    SetVNAudioFormat(static_cast<uint32_t>(8 + s.Random(28)));
    break;
  case 14:
    IsPlaying(), GetCountSample(), GetDataBuf();
    break;
  case 15:
    VNWaitUntilDone(static_cast<uint32_t>(s.Random(20)));
    break;
  case 16:
    LoadFileWave(s.File().c_str());
    break;
  case 17:
    PlayWave(0, 50);
    break;
  case 18:
    StopPlayWave();
    break;
  case 19: {
    static thread_local std::vector<char> buffer(VN_WORD_BUFFER_BYTES);
    uint32_t length = 0;
    GetBufOfWord("ba", buffer.data(), &length);
    break;
  }
  default:
    ResetAllToDefault();
    break;
  }
}

void VNTTS_CALL OnEvent(uintptr_t user, VNEvent) {
  auto& s = *reinterpret_cast<Stress*>(user);
  ++s.callbacks;
  if (s.Random(25) != 0) return;
  ++s.from_callbacks;
  // No pause from the callback: a pause holds a PlayWave on the host's thread until the host
  // resumes it.
  const int action = s.Random(kFromCallback);
  Act(s, action);
}

TEST_F(VoiceTest, TenThousandRandomHostActions) {
  Stress s;
  s.dir = std::filesystem::temp_directory_path() / ("vntts-stress-" + std::to_string(getpid()));
  std::filesystem::create_directories(s.dir);
  std::atomic<long long> action_started{0};
  std::atomic<int> current{-1};
  std::atomic<bool> finished{false};
  std::thread watchdog([&] {
    while (!finished) {
      std::this_thread::sleep_for(100ms);
      const long long started = action_started;
      const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
      if (started != 0 && now - started > std::chrono::nanoseconds(kActionBound).count()) {
        std::fprintf(stderr, "FATAL: action %d did not return\n", current.load());
        std::_Exit(3);
      }
    }
  });

  std::size_t threads = 0, files = 0;
  long memory = 0;
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
    const int action = s.Random(21);
    current = action;
    action_started = std::chrono::steady_clock::now().time_since_epoch().count();
    Act(s, action);
    action_started = 0;
  }
  SetNotifyFunc(nullptr, 0);
  EXPECT_EQ(VNWaitUntilDone(20000), 1);
  ReleaseLib();
  finished = true;
  watchdog.join();
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
  std::filesystem::remove_all(s.dir);
}

} // namespace
} // namespace vntts::test
