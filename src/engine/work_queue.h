// SPDX-License-Identifier: MIT
#pragma once
// The hand-over between the producer (renders words) and the consumer (joins and plays them).
// At most 30 records wait at a time, so the producer never runs more than 30 words ahead of the
// sound and a text of any length needs bounded memory. Nodes come from blocks of 10 that are
// kept for reuse. Waiting is on condition variables: neither side spins while the other works,
// and the two hand over in batches (the consumer wakes for a sentence end or a full queue, the
// producer for an emptied one), not once per word.
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace vntts {

struct QueueRecord {
  std::vector<std::uint8_t> samples; // a word's samples, or one byte (the sentence's final mark)
  std::uint32_t byte_count = 0;      // usable bytes; for a sentence end the pause length
  std::uint32_t text_start = 0;      // token range in the spoken text
  std::uint32_t text_end = 0;
  bool sentence_end = false;
};

class WorkQueue {
public:
  static constexpr std::size_t kCapacity = 30;
  static constexpr std::size_t kBlockSize = 10;

  WorkQueue() = default;
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;
  ~WorkQueue();

  // Non-blocking forms: a push into a full queue fails and leaves the record with the caller;
  // a pop from an empty queue gives nothing.
  bool TryPush(QueueRecord& record);
  std::optional<QueueRecord> TryPop();

  // Waits for room; gives up (false, record left with the caller) once `stop` is set.
  bool Push(QueueRecord& record, const std::atomic<bool>& stop);
  // Waits until a sentence end is queued, the queue is full or `done` is set, then moves every
  // queued record into `out` (replacing its contents). False, with `out` empty, once `stop` is
  // set, or once `done` is set and nothing is left.
  bool PopBatch(std::vector<QueueRecord>& out, const std::atomic<bool>& stop,
                const std::atomic<bool>& done);

  // Drops every record with its buffer.
  void Clear();
  bool Empty() const;
  std::size_t Size() const;
  // Number of nodes allocated so far (whole blocks); bounded by the capacity.
  std::size_t AllocatedNodes() const;

  // Wakes every waiter so that it re-reads the flags it waits on. Call after changing them.
  void Wake();

private:
  struct Node {
    QueueRecord record;
    Node* next = nullptr;
  };
  Node* TakeFreeNode();            // lock held
  bool PushLocked(QueueRecord& r); // lock held
  std::optional<QueueRecord> PopLocked();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::unique_ptr<Node[]>> blocks_;
  Node* free_ = nullptr;
  Node* head_ = nullptr;
  Node* tail_ = nullptr;
  std::size_t size_ = 0;
  std::size_t sentence_ends_ = 0;
};

} // namespace vntts
