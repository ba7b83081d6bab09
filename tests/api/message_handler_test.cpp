// SPDX-License-Identifier: MIT
// The host's message handler: what reaches it, and that it may change handlers from inside.
#include <thread>
#include <vector>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class MessageHandler : public LibraryTest {};

struct Swapper {
  int calls = 0;
  static void VNTTS_CALL Handle(uintptr_t user, const char*, const char*, int) {
    auto* self = reinterpret_cast<Swapper*>(user);
    ++self->calls;
    VNSetMessageHandler(nullptr, 0); // must not deadlock
  }
};

TEST_F(MessageHandler, MayInstallAnotherHandlerFromInside) {
  Swapper swapper;
  VNSetMessageHandler(&Swapper::Handle, reinterpret_cast<uintptr_t>(&swapper));
  setenv("VNTTS_FAIL_ALLOCATION", "engine", 1);
  ::testing::internal::CaptureStderr();
  GetVolume(); // to the swapper, which restores stderr
  GetVolume(); // to stderr
  const std::string printed = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(swapper.calls, 1);
  EXPECT_EQ(printed, "Out off memory !!!\n");
}

// Installing a handler makes no engine; two first calls racing from two threads make one.
TEST_F(MessageHandler, RacingFirstCallsMakeOneEngine) {
  VNSetMessageHandler(nullptr, 0);
  EXPECT_FALSE(EngineExisted());
  for (int round = 0; round < 5; ++round) {
    std::vector<std::thread> threads;
    std::vector<uint32_t> results(4);
    for (std::size_t i = 0; i < results.size(); ++i)
      threads.emplace_back([&results, i] { results[i] = GetDefaultRateSpeech(); });
    for (auto& t : threads)
      t.join();
    for (uint32_t r : results)
      EXPECT_EQ(r, 5000u);
    EXPECT_EQ(ReleaseLib(), 1);
    EXPECT_EQ(ReleaseLib(), 0);
  }
}

} // namespace
} // namespace vntts::test
