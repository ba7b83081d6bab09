// SPDX-License-Identifier: MIT
// The ...Ex speak calls play through the output their handle names: the test daemon's null sink
// plays the speech; a sink that does not exist is refused when the handle is asked for.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class OutputHandle : public LibraryTest {
protected:
  void SetUp() override {
    LibraryTest::SetUp();
    if (std::getenv("PULSE_SERVER") == nullptr) GTEST_SKIP() << "no test sound server";
    if (!std::filesystem::exists(VoiceFolder() / "main_dic.dat"))
      GTEST_SKIP() << "no voice built";
    setenv("VNTTS_AUDIO", "pulse", 1);
  }

  static void VNTTS_CALL OnEvent(uintptr_t user, VNEvent event) {
    if (event.kind == VN_EVENT_SOUND_END) reinterpret_cast<std::atomic<int>*>(user)->fetch_add(1);
  }

  // Speaks a short text through the handle and waits until the engine is idle again.
  int SpeakThrough(VNOutputHandle output) {
    std::atomic<int> sound_ends{0};
    SpeakVNEx("ba", output, &OutputHandle::OnEvent, reinterpret_cast<uintptr_t>(&sound_ends));
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    while (IsPlaying() && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    StopSpeak();
    return sound_ends.load();
  }
};

TEST_F(OutputHandle, NamedSinkPlaysTheSpeech) {
  const VNOutputHandle output = VNOpenOutput("vntts_null");
  ASSERT_NE(output, 0u);
  EXPECT_GE(SpeakThrough(output), 1);
  VNCloseOutput(output);
  EXPECT_TRUE(Shown().empty()) << Shown().front().text;
}

// A name no sink has is refused at once, so it cannot spoil the speech that follows.
TEST_F(OutputHandle, SinkThatDoesNotExistIsRefused) {
  EXPECT_EQ(VNOpenOutput("vntts_no_such_sink"), 0u);
  EXPECT_EQ(Shown().size(), 1u);
  ClearShown();
  EXPECT_GE(SpeakThrough(0), 1);
  EXPECT_TRUE(Shown().empty()) << Shown().front().text;
}

TEST(OutputHandleOpen, EmptyOrNullNameGivesNoHandle) {
  EXPECT_EQ(VNOpenOutput(nullptr), 0u);
  EXPECT_EQ(VNOpenOutput(""), 0u);
  VNCloseOutput(0);
}

} // namespace
} // namespace vntts::test
