// SPDX-License-Identifier: MIT
// The null sink: hears nothing, but consumes samples at the pace of a real device and
// reports positions by the steady clock, so that events and timing behave as on a sound
// card. For machines without sound.
#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "audio/audio_system.h"

namespace vntts {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kQueueAhead{250};

class NullSink final : public AudioSink {
public:
  std::string_view Backend() const override { return "null"; }

  DeviceResult Open(const WaveFormat& format) override {
    std::lock_guard lock(mutex_);
    if (!format.DevicePcm()) return device_result::kBadFormat;
    format_ = format;
    written_ = played_ns_ = 0;
    paused_ = finished_ = was_reset_ = false;
    mark_ = Clock::now();
    open_ = true;
    return device_result::kOk;
  }

  std::size_t Writable() override {
    std::lock_guard lock(mutex_);
    if (!open_) return 0;
    Advance();
    const std::uint64_t queued = written_ - Heard();
    const std::uint64_t limit = FramesIn(kQueueAhead);
    return queued >= limit ? 0 : (limit - queued) * format_.FrameBytes();
  }

  DeviceResult Write(std::span<const std::uint8_t> bytes) override {
    std::lock_guard lock(mutex_);
    if (!open_) return device_result::kInvalidHandle;
    Advance();
    written_ += bytes.size() / format_.FrameBytes();
    return device_result::kOk;
  }

  DeviceResult Finish() override {
    std::lock_guard lock(mutex_);
    finished_ = true;
    return open_ ? device_result::kOk : device_result::kInvalidHandle;
  }

  bool Drained() override {
    std::lock_guard lock(mutex_);
    Advance();
    return was_reset_ || (finished_ && Heard() >= written_);
  }

  DeviceResult Position(std::uint64_t& frames) override {
    std::lock_guard lock(mutex_);
    if (!open_) return device_result::kInvalidHandle;
    Advance();
    frames = Heard();
    return device_result::kOk;
  }

  DeviceResult Pause() override { return SetPaused(true); }
  DeviceResult Resume() override { return SetPaused(false); }

  DeviceResult Reset() override {
    {
      std::lock_guard lock(mutex_);
      if (!open_) return device_result::kInvalidHandle;
      Advance();
      written_ = Heard();
      was_reset_ = true;
    }
    Wake();
    return device_result::kOk;
  }

  void Wait(std::chrono::microseconds timeout) override {
    std::unique_lock lock(mutex_);
    if (open_ && !paused_) {
      // Wake up when half of what is queued has been heard, or when it all has.
      Advance();
      const std::uint64_t queued = written_ - Heard();
      const std::uint64_t half = FramesIn(kQueueAhead) / 2;
      const std::uint64_t until = queued > half ? queued - half : queued;
      if (until > 0 || finished_) timeout = std::min(timeout, DurationOf(until));
    }
    cv_.wait_for(lock, timeout, [&] { return woken_; });
    woken_ = false;
  }

  void Wake() override {
    {
      std::lock_guard lock(mutex_);
      woken_ = true;
    }
    cv_.notify_all();
  }

  void Close() override {
    std::lock_guard lock(mutex_);
    open_ = false;
  }

private:
  DeviceResult SetPaused(bool paused) {
    {
      std::lock_guard lock(mutex_);
      if (!open_) return device_result::kInvalidHandle;
      Advance();
      paused_ = paused;
    }
    Wake();
    return device_result::kOk;
  }

  // Moves the play head by the time passed since the last look, never past what was written.
  void Advance() {
    const auto now = Clock::now();
    if (!paused_) {
      const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(now - mark_).count();
      played_ns_ += static_cast<std::uint64_t>(ns);
      // Rounded up, so that reaching the cap means every written frame was heard.
      const std::uint64_t rate = format_.samples_per_second;
      const std::uint64_t cap = (written_ * 1'000'000'000ull + rate - 1) / rate;
      played_ns_ = std::min(played_ns_, cap);
    }
    mark_ = now;
  }
  std::uint64_t Heard() const {
    return std::min<std::uint64_t>(written_,
                                   played_ns_ * format_.samples_per_second / 1'000'000'000ull);
  }
  std::uint64_t FramesIn(std::chrono::milliseconds t) const {
    return static_cast<std::uint64_t>(t.count()) * format_.samples_per_second / 1000;
  }
  std::chrono::microseconds DurationOf(std::uint64_t frames) const {
    return std::chrono::microseconds(frames * 1'000'000ull / format_.samples_per_second + 1);
  }

  std::mutex mutex_;
  std::condition_variable cv_;
  WaveFormat format_ = WaveFormat::Pcm(1, 22050, 16);
  bool open_ = false;
  bool paused_ = false;
  bool finished_ = false;
  bool was_reset_ = false;
  bool woken_ = false;
  std::uint64_t written_ = 0;
  std::uint64_t played_ns_ = 0;
  Clock::time_point mark_{};
};

} // namespace

std::unique_ptr<AudioSink> make_null_sink() {
  return std::make_unique<NullSink>();
}

} // namespace vntts
