// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
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
  for (std::uint32_t round = 0; round < 2; ++round) {
    for (std::uint32_t i = 0; i < 30; ++i) {
      auto r = Word(i);
      ASSERT_TRUE(q.TryPush(r)) << i;
      EXPECT_EQ(q.AllocatedNodes(), round == 0 ? (i / 10 + 1) * 10 : 30) << "nodes are reused";
    }
    auto extra = Word(99);
    EXPECT_FALSE(q.TryPush(extra));
    EXPECT_EQ(extra.samples.size(), 4u) << "a refused record stays with the caller";
    for (std::uint32_t i = 0; i < 30; ++i)
      EXPECT_EQ(q.TryPop()->text_start, i);
    EXPECT_FALSE(q.TryPop());
  }
}

// The consumer is woken by a sentence end or a full queue, not by every word, and takes all
// that is queued at once; every record arrives, in order, and a stop ends both sides.
TEST(WorkQueue, HandsOverInBatchesAndEndsOnDoneOrStop) {
  WorkQueue q;
  std::atomic<bool> stop{false}, done{false};
  std::thread producer([&] {
    for (std::uint32_t i = 0; i < 1000; ++i) {
      auto r = Word(i);
      r.sentence_end = i % 7 == 6;
      ASSERT_TRUE(q.Push(r, stop));
    }
    done = true;
    q.Wake();
  });
  std::vector<QueueRecord> batch;
  std::uint32_t expected = 0;
  int batches = 0;
  while (q.PopBatch(batch, stop, done)) {
    ++batches;
    for (const auto& r : batch)
      EXPECT_EQ(r.text_start, expected++);
  }
  producer.join();
  EXPECT_EQ(expected, 1000u);
  EXPECT_LE(batches, 1000 / 7 + 2);

  done = false;
  auto r = Word(1);
  ASSERT_TRUE(q.TryPush(r));
  std::thread stopper([&] {
    stop = true;
    q.Wake();
  });
  EXPECT_FALSE(q.PopBatch(batch, stop, done)) << "a stop wins over waiting records";
  auto more = Word(2);
  for (int i = 0; i < 40; ++i)
    q.TryPush(more);
  EXPECT_FALSE(q.Push(more, stop));
  stopper.join();
}

// Stop empties the queue while the producer may still push and the consumer pop: under
// ThreadSanitizer any of the three touching the list unlocked is a report.
TEST(WorkQueue, ClearingWhileBothSidesRunKeepsTheListWhole) {
  WorkQueue q;
  std::atomic<bool> stop{false}, done{false};
  std::thread producer([&] {
    for (std::uint32_t i = 0; i < 3000; ++i) {
      auto r = Word(i);
      r.sentence_end = i % 5 == 4;
      ASSERT_TRUE(q.Push(r, stop));
    }
    done = true;
    q.Wake();
  });
  std::uint32_t last = 0;
  std::thread consumer([&] {
    std::vector<QueueRecord> batch;
    while (q.PopBatch(batch, stop, done))
      for (const auto& r : batch) {
        EXPECT_GE(r.text_start, last) << "order survives the clearing";
        last = r.text_start;
      }
  });
  while (!done) {
    q.Clear();
    std::this_thread::yield();
  }
  producer.join();
  consumer.join();
  EXPECT_TRUE(q.Empty());
  EXPECT_LE(q.AllocatedNodes(), WorkQueue::kCapacity);
}

} // namespace
} // namespace vntts
