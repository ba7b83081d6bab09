#pragma once
// Every test of the exports starts and ends without an engine and records what the library
// tells the user through its message handler.
#include <gtest/gtest.h>

#include <cstdlib>
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
    VNSetMessageHandler(&LibraryTest::Record, reinterpret_cast<uintptr_t>(&shown_));
  }
  void TearDown() override {
    unsetenv("VNTTS_FAIL_ALLOCATION");
    ReleaseLib();
    VNSetMessageHandler(nullptr, 0);
  }

  // True if an engine existed; destroys it, so a test can ask "was one made?".
  static bool EngineExisted() { return ReleaseLib() == 1; }

  std::vector<ShownMessage> shown_;

private:
  static void VNTTS_CALL Record(uintptr_t user, const char* text, const char* caption, int icon) {
    reinterpret_cast<std::vector<ShownMessage>*>(user)->push_back({text, caption, icon});
  }
};

} // namespace vntts::test
