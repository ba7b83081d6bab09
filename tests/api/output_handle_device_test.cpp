// SPDX-License-Identifier: MIT
// The ...Ex speak calls play through the output their handle names, on the test's own sound
// server (scripts/with-pulseaudio).
#include "library_fixture.h"

namespace vntts::test {
namespace {

class OutputHandle : public VoiceTest {
protected:
  void SetUp() override {
    if (std::getenv("PULSE_SERVER") == nullptr) GTEST_SKIP() << "no test sound server";
    VoiceTest::SetUp();
    setenv("VNTTS_AUDIO", "pulse", 1);
  }

  // Speaks a short text through the handle; how often the sound ended.
  static int SpeakThrough(VNOutputHandle output) {
    Calls heard;
    SpeakVNEx("ba", output, &Count, Pass(heard));
    EXPECT_EQ(VNWaitUntilDone(10000), 1);
    return heard.Fired(VN_EVENT_SOUND_END);
  }
};

// A name no sink has is refused at once, so it cannot spoil the speech that follows; the
// server's null sink, named, plays the speech.
TEST_F(OutputHandle, SinkThatDoesNotExistIsRefused) {
  EXPECT_EQ(VNOpenOutput("vntts_no_such_sink"), 0u);
  EXPECT_EQ(Shown().size(), 1u);
  ClearShown();
  EXPECT_EQ(SpeakThrough(0), 1);
  const VNOutputHandle output = VNOpenOutput("vntts_null");
  ASSERT_NE(output, 0u);
  EXPECT_EQ(SpeakThrough(output), 1);
  VNCloseOutput(output);
  EXPECT_TRUE(Shown().empty()) << Shown().front().text;
}

} // namespace
} // namespace vntts::test
