// SPDX-License-Identifier: MIT
// Playback through ALSA (also the way to PulseAudio through its ALSA plugin).
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <string>
#include <vector>

#include "audio/alsa_pcm.h"
#include "audio/audio_system.h"

namespace vntts {
namespace {

class AlsaSink final : public AudioSink {
public:
  explicit AlsaSink(std::string device)
      : device_(std::move(device)), wake_fd_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
  ~AlsaSink() override {
    Close();
    if (wake_fd_ >= 0) ::close(wake_fd_);
  }

  std::string_view Backend() const override { return "alsa"; }

  DeviceResult Open(const WaveFormat& format) override {
    Close();
    std::lock_guard lock(mutex_);
    if (wake_fd_ < 0) return device_result::kNoMemory;
    if (DeviceResult r = AlsaOpen(device_, SND_PCM_STREAM_PLAYBACK, pcm_); r != 0) return r;
    if (DeviceResult r = AlsaConfigure(pcm_, format, setup_); r != 0) {
      snd_pcm_close(pcm_);
      pcm_ = nullptr;
      return r;
    }
    snd_pcm_sw_params_t* sw = nullptr;
    snd_pcm_sw_params_alloca(&sw);
    snd_pcm_sw_params_current(pcm_, sw);
    snd_pcm_sw_params_set_start_threshold(pcm_, sw, setup_.period_frames);
    snd_pcm_sw_params_set_avail_min(pcm_, sw, setup_.period_frames);
    snd_pcm_sw_params(pcm_, sw);
    const int count = snd_pcm_poll_descriptors_count(pcm_);
    pcm_fds_.assign(static_cast<std::size_t>(std::max(count, 0)), pollfd{});
    snd_pcm_poll_descriptors(pcm_, pcm_fds_.data(), static_cast<unsigned>(pcm_fds_.size()));
    frame_bytes_ = format.FrameBytes();
    written_ = last_position_ = 0;
    finishing_ = paused_ = was_reset_ = false;
    return device_result::kOk;
  }

  std::size_t Writable() override {
    std::lock_guard lock(mutex_);
    if (!pcm_ || paused_ || was_reset_) return 0;
    snd_pcm_sframes_t avail = snd_pcm_avail_update(pcm_);
    if (avail < 0 && Recover(static_cast<int>(avail))) avail = snd_pcm_avail_update(pcm_);
    return avail > 0 ? static_cast<std::size_t>(avail) * frame_bytes_ : 0;
  }

  DeviceResult Write(std::span<const std::uint8_t> bytes) override {
    std::lock_guard lock(mutex_);
    if (!pcm_) return device_result::kInvalidHandle;
    auto frames = static_cast<snd_pcm_uframes_t>(bytes.size() / frame_bytes_);
    const std::uint8_t* p = bytes.data();
    while (frames > 0 && !was_reset_) {
      const snd_pcm_sframes_t n = snd_pcm_writei(pcm_, p, frames);
      if (n == -EAGAIN) {
        snd_pcm_wait(pcm_, 10);
        continue;
      }
      if (n < 0) {
        if (!Recover(static_cast<int>(n))) return AlsaErrorToResult(static_cast<int>(n));
        continue;
      }
      written_ += static_cast<std::uint64_t>(n);
      frames -= static_cast<snd_pcm_uframes_t>(n);
      p += static_cast<std::size_t>(n) * frame_bytes_;
    }
    return device_result::kOk;
  }

  DeviceResult Finish() override {
    std::lock_guard lock(mutex_);
    if (!pcm_) return device_result::kInvalidHandle;
    finishing_ = true;
    // Less than the start threshold was written: start it by hand.
    if (snd_pcm_state(pcm_) == SND_PCM_STATE_PREPARED && written_ > 0) snd_pcm_start(pcm_);
    return device_result::kOk;
  }

  bool Drained() override {
    std::lock_guard lock(mutex_);
    if (was_reset_ || !pcm_) return true;
    if (!finishing_) return false;
    return Heard() >= written_;
  }

  DeviceResult Position(std::uint64_t& frames) override {
    std::lock_guard lock(mutex_);
    if (!pcm_) return device_result::kInvalidHandle;
    if (!paused_) last_position_ = std::max(last_position_, Heard());
    frames = last_position_;
    return device_result::kOk;
  }

  DeviceResult Pause() override { return SetPaused(true); }
  DeviceResult Resume() override { return SetPaused(false); }

  DeviceResult Reset() override {
    {
      std::lock_guard lock(mutex_);
      if (!pcm_) return device_result::kInvalidHandle;
      snd_pcm_drop(pcm_);
      was_reset_ = true;
    }
    Wake();
    return device_result::kOk;
  }

  void Wait(std::chrono::microseconds timeout) override {
    std::vector<pollfd> fds;
    fds.push_back({wake_fd_, POLLIN, 0});
    {
      std::lock_guard lock(mutex_);
      // A paused, finishing or stopped stream reports itself ready all the time; only
      // the clock and Wake() end the wait then.
      if (pcm_ && !paused_ && !finishing_ && !was_reset_)
        fds.insert(fds.end(), pcm_fds_.begin(), pcm_fds_.end());
    }
    const auto us = std::max<std::int64_t>(timeout.count(), 0);
    const timespec ts{static_cast<time_t>(us / 1'000'000),
                      static_cast<long>(us % 1'000'000) * 1000};
    if (::ppoll(fds.data(), fds.size(), &ts, nullptr) > 0 && (fds[0].revents & POLLIN)) {
      std::uint64_t drop = 0;
      [[maybe_unused]] const auto n = ::read(wake_fd_, &drop, sizeof drop);
    }
  }

  void Wake() override {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto n = ::write(wake_fd_, &one, sizeof one);
  }

  void Close() override {
    std::lock_guard lock(mutex_);
    if (pcm_) {
      snd_pcm_drop(pcm_);
      snd_pcm_close(pcm_);
      pcm_ = nullptr;
    }
  }

private:
  // Frames written minus those still queued (lock held).
  std::uint64_t Heard() {
    snd_pcm_sframes_t delay = 0;
    const snd_pcm_state_t state = snd_pcm_state(pcm_);
    if (state == SND_PCM_STATE_XRUN || state == SND_PCM_STATE_SETUP) return written_;
    if (snd_pcm_delay(pcm_, &delay) < 0) return written_;
    delay = std::clamp<snd_pcm_sframes_t>(delay, 0, static_cast<snd_pcm_sframes_t>(written_));
    return written_ - static_cast<std::uint64_t>(delay);
  }

  // An underrun or a suspend: make the stream usable again (lock held).
  bool Recover(int error) {
    if (error == -EPIPE) return snd_pcm_prepare(pcm_) == 0;
    if (error == -ESTRPIPE) {
      int rc;
      while ((rc = snd_pcm_resume(pcm_)) == -EAGAIN)
        ::usleep(1000);
      return rc == 0 || snd_pcm_prepare(pcm_) == 0;
    }
    return false;
  }

  DeviceResult SetPaused(bool paused) {
    {
      std::lock_guard lock(mutex_);
      if (!pcm_) return device_result::kInvalidHandle;
      if (!setup_.can_pause) return device_result::kNotSupported;
      if (paused_ == paused) return device_result::kOk;
      if (paused) last_position_ = std::max(last_position_, Heard());
      const snd_pcm_state_t state = snd_pcm_state(pcm_);
      // A stream that has not started yet has nothing to hold; only the flag changes.
      if (state == SND_PCM_STATE_RUNNING || state == SND_PCM_STATE_PAUSED) {
        if (const int rc = snd_pcm_pause(pcm_, paused ? 1 : 0); rc < 0)
          return AlsaErrorToResult(rc);
      }
      paused_ = paused;
    }
    Wake();
    return device_result::kOk;
  }

  std::string device_;
  int wake_fd_;
  std::mutex mutex_;
  snd_pcm_t* pcm_ = nullptr;
  AlsaSetup setup_;
  std::vector<pollfd> pcm_fds_;
  std::uint32_t frame_bytes_ = 1;
  std::uint64_t written_ = 0;
  std::uint64_t last_position_ = 0;
  bool finishing_ = false;
  bool paused_ = false;
  bool was_reset_ = false;
};

} // namespace

std::unique_ptr<AudioSink> MakeAlsaSink(const std::string& device) {
  // Probe once, so that a machine without a usable PCM reports no device at all.
  snd_pcm_t* probe = nullptr;
  if (AlsaOpen(device, SND_PCM_STREAM_PLAYBACK, probe) != device_result::kOk) return nullptr;
  snd_pcm_close(probe);
  return std::make_unique<AlsaSink>(device);
}

} // namespace vntts
