// SPDX-License-Identifier: MIT
#pragma once
// The bytes a capture backend has received and not yet handed over, shared between the
// backend's delivery thread (its callback or reader) and the recorder's thread. Bytes arrive
// only while capturing is on, so that a paused or stopped source keeps nothing.
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace vntts {

class CaptureBuffer {
public:
  // Drops what was captured and turns capturing off.
  void Reset() {
    std::lock_guard lock(mutex_);
    data_.clear();
    capturing_ = false;
  }
  void SetCapturing(bool on) {
    std::lock_guard lock(mutex_);
    capturing_ = on;
  }
  // Keeps the bytes if capturing is on (null bytes: a hole of `count` bytes of `silence`), and
  // wakes a waiting reader either way.
  void Append(const std::uint8_t* bytes, std::size_t count, std::uint8_t silence = 0) {
    {
      std::lock_guard lock(mutex_);
      if (capturing_) {
        if (bytes)
          data_.insert(data_.end(), bytes, bytes + count);
        else
          data_.resize(data_.size() + count, silence);
      }
    }
    cv_.notify_all();
  }

  std::size_t size() {
    std::lock_guard lock(mutex_);
    return data_.size();
  }
  bool WaitFor(std::size_t bytes, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    return cv_.wait_for(lock, timeout, [&] { return data_.size() >= bytes; });
  }
  std::vector<std::uint8_t> Take() {
    std::lock_guard lock(mutex_);
    return std::exchange(data_, {});
  }

private:
  std::mutex mutex_;
  std::condition_variable cv_;
  bool capturing_ = false;
  std::vector<std::uint8_t> data_;
};

} // namespace vntts
