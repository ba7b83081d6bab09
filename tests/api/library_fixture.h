// SPDX-License-Identifier: MIT
#pragma once
// Every test of the exports starts and ends without an engine, speaks over the null sink, has a
// private folder and records what the library tells the user through its message handler.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temp_folder.h"
#include "vntts/vntts.h"

namespace vntts::test {

using namespace std::chrono_literals;

struct ShownMessage {
  std::string text;
  std::string caption;
  int icon;
  bool operator==(const ShownMessage&) const = default;
};

inline void PrintTo(const ShownMessage& m, std::ostream* os) {
  *os << "{\"" << m.text << "\", \"" << m.caption << "\", " << m.icon << "}";
}

class LibraryTest : public ::testing::Test {
protected:
  void SetUp() override {
    // Nothing of the tests may reach a sound card or a window.
    setenv("VNTTS_AUDIO", "null", 1);
    unsetenv("VNTTS_FAIL_ALLOCATION");
    ReleaseLib();
    VNSetMessageHandler(&LibraryTest::Remember, reinterpret_cast<uintptr_t>(this));
  }
  void TearDown() override {
    unsetenv("VNTTS_FAIL_ALLOCATION");
    ReleaseLib();
    VNSetMessageHandler(nullptr, 0);
  }

  // True if an engine existed; destroys it, so a test can ask "was one made?".
  static bool EngineExisted() { return ReleaseLib() == 1; }

  // What was shown so far. The handler may run on any of the library's threads.
  std::vector<ShownMessage> Shown() {
    std::lock_guard lock(shown_mutex_);
    return shown_;
  }
  void ClearShown() {
    std::lock_guard lock(shown_mutex_);
    shown_.clear();
  }
  std::string Path(const char* name) const { return (folder_ / name).string(); }

  TempFolder folder_;

private:
  static void VNTTS_CALL Remember(uintptr_t user, const char* text, const char* caption, int icon) {
    auto* self = reinterpret_cast<LibraryTest*>(user);
    std::lock_guard lock(self->shown_mutex_);
    self->shown_.push_back({text, caption, icon});
  }
  std::mutex shown_mutex_;
  std::vector<ShownMessage> shown_;
};

// Tests that speak with the default voice the build made (or $VNTTS_DATA_DIR, read once: tests
// change the environment) over the null sink (real pace, no sound); skipped without a voice.
class VoiceTest : public LibraryTest {
protected:
  void SetUp() override {
    static const std::string voice = [] {
      const char* env = std::getenv("VNTTS_DATA_DIR");
      return std::string(env && *env ? env : VNTTS_BINARY_DIR "/bin/index");
    }();
    if (!std::filesystem::exists(voice + "/main_dic.arr")) GTEST_SKIP() << "no voice in " << voice;
    setenv("VNTTS_DATA_DIR", voice.c_str(), 1);
    LibraryTest::SetUp();
  }
};

// What a notification function heard (it runs on the library's threads), and what it does
// besides.
struct Calls {
  std::atomic<int> words{0}, result{-1}, entered{0}, left{0}, late{0};
  std::atomic<bool> unregistered{false};
  std::mutex host_lock; // a lock of the host's own that a callback may wait for
  std::mutex events_mutex;
  std::vector<VNEvent> events;
  void (*act)(Calls&, const VNEvent&) = nullptr;

  int Fired(std::uint32_t kind) {
    std::lock_guard lock(events_mutex);
    return static_cast<int>(std::count_if(events.begin(), events.end(),
                                          [&](const VNEvent& e) { return e.kind == kind; }));
  }
  std::vector<std::pair<std::uint32_t, std::uint32_t>> WordSpans() {
    std::lock_guard lock(events_mutex);
    std::vector<std::pair<std::uint32_t, std::uint32_t>> spans;
    for (const VNEvent& e : events)
      if (e.kind == VN_EVENT_WORD_BOUNDARY) spans.emplace_back(e.text_start, e.text_length);
    return spans;
  }
};

inline Calls& Of(uintptr_t user) {
  return *reinterpret_cast<Calls*>(user);
}
inline uintptr_t Pass(Calls& c) {
  return reinterpret_cast<uintptr_t>(&c);
}

inline void VNTTS_CALL Count(uintptr_t user, VNEvent e) {
  Calls& c = Of(user);
  ++c.entered;
  if (c.unregistered) ++c.late;
  if (e.kind == VN_EVENT_WORD_BOUNDARY) ++c.words;
  {
    std::lock_guard lock(c.events_mutex);
    c.events.push_back(e);
  }
  if (c.act) c.act(c, e);
  ++c.left;
}

// While it lives, a call that has not returned within `seconds` ends the program by SIGALRM: a
// hang cannot be recovered from, but it must not pass for a slow success either.
struct Deadline {
  explicit Deadline(unsigned seconds) { alarm(seconds); }
  ~Deadline() { alarm(0); }
};

// Waits (a bounded while) until `ready` holds.
template <class Ready> bool Eventually(Ready&& ready, std::chrono::milliseconds limit) {
  const auto until = std::chrono::steady_clock::now() + limit;
  while (!ready()) {
    if (std::chrono::steady_clock::now() > until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

} // namespace vntts::test
