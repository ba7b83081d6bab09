// SPDX-License-Identifier: MIT
// A hundred megabytes of letters without a blank: the speak call returns after copying the
// text (conversion and reading run on the speech's thread), a stop is honoured at once however
// far the reading has got, and memory stays near the text's own size.
#include <sys/resource.h>

#include "library_fixture.h"

namespace vntts::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

long PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

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
    const auto start = Clock::now();
    SpeakVNUTF8(text.c_str(), nullptr, 0);
    const auto spoke = Clock::now();
    std::this_thread::sleep_for(round * 300ms); // once while converting, once while reading
    const auto stopping = Clock::now();
    EXPECT_EQ(StopSpeak(), 1);
    const auto stopped = Clock::now();
    // The call copies the text (slow page faults on some machines): far below the seconds the
    // conversion and the reading of such a text take.
    EXPECT_LT(spoke - start, 3s);
    EXPECT_LT(stopped - stopping, 100ms);
  }
  EXPECT_EQ(VNWaitUntilDone(30000), 1);
  // The caller's own copy, the engine's copy and its conversion: no more.
  EXPECT_LT(PeakMegabytes() - before, 350);
}

} // namespace
} // namespace vntts::test
