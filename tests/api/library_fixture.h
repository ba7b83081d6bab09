// SPDX-License-Identifier: MIT
#pragma once
// Every test of the exports starts and ends without an engine and records what the library
// tells the user through its message handler.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "vntts/vntts.h"

namespace vntts::test {

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
    VNSetMessageHandler(&LibraryTest::Record, reinterpret_cast<uintptr_t>(this));
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

private:
  static void VNTTS_CALL Record(uintptr_t user, const char* text, const char* caption, int icon) {
    auto* self = reinterpret_cast<LibraryTest*>(user);
    std::lock_guard lock(self->shown_mutex_);
    self->shown_.push_back({text, caption, icon});
  }
  std::mutex shown_mutex_;
  std::vector<ShownMessage> shown_;
};

// The default voice the build made (or $VNTTS_DATA_DIR), read once at start-up: tests change
// the environment.
inline const std::filesystem::path& VoiceFolder() {
  static const std::filesystem::path folder = [] {
    const char* env = std::getenv("VNTTS_DATA_DIR");
    return std::filesystem::path(env && *env ? env : VNTTS_BINARY_DIR "/bin/index");
  }();
  return folder;
}

// Tests that speak with the default voice over the null sink (real pace, no sound); skipped
// when the build made no voice.
class VoiceTest : public LibraryTest {
protected:
  void SetUp() override {
    if (!std::filesystem::exists(VoiceFolder() / "main_dic.arr"))
      GTEST_SKIP() << "no default voice in " << VoiceFolder();
    setenv("VNTTS_DATA_DIR", VoiceFolder().c_str(), 1);
    LibraryTest::SetUp();
  }
};

// Runs `action` and fails the whole program when it has not returned within `limit`: a hang
// cannot be recovered from, but it must not pass for a slow success either.
template <class Action> void WithinTime(std::chrono::milliseconds limit, Action&& action) {
  auto done = std::async(std::launch::async, std::forward<Action>(action));
  if (done.wait_for(limit) == std::future_status::timeout) {
    std::fprintf(stderr, "FATAL: a library call did not return within %lld ms\n",
                 static_cast<long long>(limit.count()));
    std::fflush(stderr);
    std::_Exit(3);
  }
  done.get();
}

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
