#pragma once
// Every test of the exports starts and ends without an engine and records what the library
// tells the user through its message handler.
#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>
#include <string>
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

} // namespace vntts::test
