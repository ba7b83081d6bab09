// SPDX-License-Identifier: MIT
#include "engine/work_queue.h"

namespace vntts {

WorkQueue::~WorkQueue() = default;

WorkQueue::Node* WorkQueue::TakeFreeNode() {
  if (!free_) {
    auto block = std::make_unique<Node[]>(kBlockSize);
    for (std::size_t i = 0; i < kBlockSize; ++i) {
      block[i].next = free_;
      free_ = &block[i];
    }
    blocks_.push_back(std::move(block));
  }
  Node* n = free_;
  free_ = n->next;
  n->next = nullptr;
  return n;
}

bool WorkQueue::PushLocked(QueueRecord& r) {
  if (size_ >= kCapacity) return false;
  Node* n = TakeFreeNode();
  n->record = std::move(r);
  if (tail_)
    tail_->next = n;
  else
    head_ = n;
  tail_ = n;
  ++size_;
  if (n->record.sentence_end) ++sentence_ends_;
  return true;
}

std::optional<QueueRecord> WorkQueue::PopLocked() {
  if (!head_) return std::nullopt;
  Node* n = head_;
  head_ = n->next;
  if (!head_) tail_ = nullptr;
  --size_;
  if (n->record.sentence_end) --sentence_ends_;
  std::optional<QueueRecord> out(std::move(n->record));
  n->record = QueueRecord{};
  n->next = free_;
  free_ = n;
  return out;
}

bool WorkQueue::TryPush(QueueRecord& record) {
  bool pushed;
  {
    std::lock_guard lock(mutex_);
    pushed = PushLocked(record);
  }
  if (pushed) changed_.notify_all();
  return pushed;
}

std::optional<QueueRecord> WorkQueue::TryPop() {
  std::optional<QueueRecord> r;
  {
    std::lock_guard lock(mutex_);
    r = PopLocked();
  }
  if (r) changed_.notify_all();
  return r;
}

bool WorkQueue::Push(QueueRecord& record, const std::atomic<bool>& stop) {
  bool wake;
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return stop.load() || size_ < kCapacity; });
    if (stop.load() || !PushLocked(record)) return false;
    // The consumer only waits for these two.
    wake = tail_->record.sentence_end || size_ == kCapacity;
  }
  if (wake) changed_.notify_all();
  return true;
}

bool WorkQueue::PopBatch(std::vector<QueueRecord>& out, const std::atomic<bool>& stop,
                         const std::atomic<bool>& done) {
  out.clear();
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] {
      return stop.load() || done.load() || sentence_ends_ > 0 || size_ >= kCapacity;
    });
    if (stop.load()) return false;
    while (auto r = PopLocked())
      out.push_back(std::move(*r));
  }
  if (out.empty()) return false;
  changed_.notify_all();
  return true;
}

void WorkQueue::Clear() {
  {
    std::lock_guard lock(mutex_);
    while (PopLocked()) {
    }
  }
  changed_.notify_all();
}

bool WorkQueue::Empty() const {
  std::lock_guard lock(mutex_);
  return size_ == 0;
}

std::size_t WorkQueue::Size() const {
  std::lock_guard lock(mutex_);
  return size_;
}

std::size_t WorkQueue::AllocatedNodes() const {
  std::lock_guard lock(mutex_);
  return blocks_.size() * kBlockSize;
}

void WorkQueue::Wake() {
  // Taking the lock orders the flag change before any waiter's next predicate check, so a
  // waiter cannot miss the wake-up between testing the flag and going to sleep.
  { std::lock_guard lock(mutex_); }
  changed_.notify_all();
}

} // namespace vntts
