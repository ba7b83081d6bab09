#include <gtest/gtest.h>

#include <thread>

#include "engine/work_queue.h"

namespace vntts {
namespace {

QueueRecord Word(std::uint32_t start) {
  QueueRecord r;
  r.samples.assign(4, 1);
  r.byte_count = 4;
  r.text_start = start;
  r.text_end = start + 1;
  return r;
}

TEST(WorkQueue, HoldsThirtyRecordsInOrderWithNodesInBlocksOfTen) {
  WorkQueue q;
  for (std::uint32_t i = 0; i < 30; ++i) {
    auto r = Word(i);
    ASSERT_TRUE(q.TryPush(r)) << i;
    EXPECT_EQ(q.AllocatedNodes(), (i / 10 + 1) * 10);
  }
  auto extra = Word(99);
  EXPECT_FALSE(q.TryPush(extra));
  EXPECT_EQ(extra.text_start, 99u) << "a refused record stays with the caller";
  EXPECT_EQ(extra.samples.size(), 4u);
  EXPECT_EQ(q.Size(), 30u);
  for (std::uint32_t i = 0; i < 30; ++i) {
    auto r = q.TryPop();
    ASSERT_TRUE(r);
    EXPECT_EQ(r->text_start, i);
  }
  EXPECT_FALSE(q.TryPop());
  // Reuse: a second round allocates nothing new.
  for (std::uint32_t i = 0; i < 30; ++i) {
    auto r = Word(i);
    ASSERT_TRUE(q.TryPush(r));
  }
  EXPECT_EQ(q.AllocatedNodes(), 30u);
  q.Clear();
  EXPECT_TRUE(q.Empty());
  EXPECT_FALSE(q.TryPop());
}

TEST(WorkQueue, BlockingPushWaitsForRoomAndGivesUpOnStop) {
  WorkQueue q;
  std::atomic<bool> stop{false}, done{false};
  for (std::uint32_t i = 0; i < 30; ++i) {
    auto r = Word(i);
    ASSERT_TRUE(q.TryPush(r));
  }
  std::thread consumer([&] {
    for (int i = 0; i < 5; ++i)
      EXPECT_TRUE(q.Pop(stop, done));
  });
  for (std::uint32_t i = 30; i < 35; ++i) {
    auto r = Word(i);
    EXPECT_TRUE(q.Push(r, stop));
  }
  consumer.join();
  EXPECT_EQ(q.Size(), 30u);

  std::thread stopper([&] {
    stop = true;
    q.Wake();
  });
  auto r = Word(77);
  EXPECT_FALSE(q.Push(r, stop));
  stopper.join();
  EXPECT_EQ(r.text_start, 77u);
}

TEST(WorkQueue, BlockingPopEndsWhenDoneAndEmptyOrStopped) {
  WorkQueue q;
  std::atomic<bool> stop{false}, done{false};
  std::thread producer([&] {
    for (std::uint32_t i = 0; i < 100; ++i) {
      auto r = Word(i);
      ASSERT_TRUE(q.Push(r, stop));
    }
    done = true;
    q.Wake();
  });
  std::uint32_t expected = 0;
  while (auto r = q.Pop(stop, done))
    EXPECT_EQ(r->text_start, expected++);
  producer.join();
  EXPECT_EQ(expected, 100u);

  done = false;
  auto r = Word(1);
  ASSERT_TRUE(q.TryPush(r));
  stop = true;
  EXPECT_FALSE(q.Pop(stop, done)) << "a stop wins over waiting records";
}

} // namespace
} // namespace vntts
