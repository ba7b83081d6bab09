// SPDX-License-Identifier: MIT
// The null source: silence at real time, for machines without sound input.
#include <algorithm>
#include <mutex>
#include <thread>

#include "audio/audio_system.h"

namespace vntts {
namespace {

using Clock = std::chrono::steady_clock;

class NullSource final : public AudioSource {
public:
  std::string_view Backend() const override { return "null"; }

  DeviceResult Open(const WaveFormat& format) override {
    std::lock_guard lock(mutex_);
    if (!format.DevicePcm()) return device_result::kBadFormat;
    format_ = format;
    open_ = true;
    running_ = false;
    banked_ = taken_ = 0;
    return device_result::kOk;
  }
  DeviceResult Start() override { return Run(true); }
  DeviceResult Pause() override { return Run(false); }
  DeviceResult Resume() override { return Run(true); }
  DeviceResult Stop() override { return Run(false); }

  std::size_t Captured() override {
    std::lock_guard lock(mutex_);
    return BytesNow() - taken_;
  }

  bool WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) override {
    const auto deadline = Clock::now() + timeout;
    for (;;) {
      std::size_t missing = 0;
      {
        std::lock_guard lock(mutex_);
        const std::size_t have = BytesNow() - taken_;
        if (have >= bytes) return true;
        if (!running_) return false;
        missing = bytes - have;
      }
      const auto rate = std::max<std::uint64_t>(format_.average_bytes_per_second, 1);
      const auto need = std::chrono::microseconds(missing * 1'000'000ull / rate + 1);
      const auto now = Clock::now();
      if (now >= deadline) return false;
      std::this_thread::sleep_for(std::min<Clock::duration>(need, deadline - now));
    }
  }

  std::vector<std::uint8_t> Take() override {
    std::lock_guard lock(mutex_);
    const std::size_t total = BytesNow();
    std::vector<std::uint8_t> out(total - taken_,
                                  format_.bits_per_sample == 8 ? std::uint8_t{0x80} : 0);
    taken_ = total;
    return out;
  }

  void Close() override {
    std::lock_guard lock(mutex_);
    open_ = running_ = false;
  }

private:
  DeviceResult Run(bool on) {
    std::lock_guard lock(mutex_);
    if (!open_) return device_result::kInvalidHandle;
    if (on == running_) return device_result::kOk;
    if (on) {
      since_ = Clock::now();
    } else {
      banked_ = BytesNow();
    }
    running_ = on;
    return device_result::kOk;
  }
  // Whole frames captured since open (lock held).
  std::size_t BytesNow() const {
    std::uint64_t bytes = banked_;
    if (running_) {
      const auto us =
          std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - since_).count();
      const std::uint64_t frames =
          static_cast<std::uint64_t>(us) * format_.samples_per_second / 1'000'000;
      bytes += frames * format_.FrameBytes();
    }
    return static_cast<std::size_t>(bytes);
  }

  std::mutex mutex_;
  WaveFormat format_ = WaveFormat::Pcm(1, 22050, 16);
  bool open_ = false;
  bool running_ = false;
  std::size_t banked_ = 0;
  std::size_t taken_ = 0;
  Clock::time_point since_{};
};

} // namespace

std::unique_ptr<AudioSource> make_null_source() {
  return std::make_unique<NullSource>();
}

} // namespace vntts
