// SPDX-License-Identifier: MIT
// Capture through ALSA. A reader thread owns the PCM once capture starts and collects the
// frames; pausing keeps the PCM running and drops what arrives meanwhile.
#include <poll.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "audio/alsa_pcm.h"
#include "audio/audio_system.h"
#include "audio/capture_buffer.h"

namespace vntts {
namespace {

class AlsaSource final : public AudioSource {
public:
  explicit AlsaSource(std::string device) : device_(std::move(device)) {}
  ~AlsaSource() override { Close(); }

  std::string_view Backend() const override { return "alsa"; }

  DeviceResult Open(const WaveFormat& format) override {
    Close();
    if (DeviceResult r = AlsaOpen(device_, SND_PCM_STREAM_CAPTURE, pcm_); r != 0) return r;
    if (DeviceResult r = AlsaConfigure(pcm_, format, setup_); r != 0) {
      snd_pcm_close(pcm_);
      pcm_ = nullptr;
      return r;
    }
    frame_bytes_ = format.FrameBytes();
    captured_.Reset();
    return device_result::kOk;
  }

  DeviceResult Start() override {
    if (!pcm_) return device_result::kInvalidHandle;
    if (reader_.joinable()) return Resume();
    if (const int rc = snd_pcm_start(pcm_); rc < 0) return AlsaErrorToResult(rc);
    captured_.SetCapturing(true);
    running_ = true;
    reader_ = std::thread([this] { ReadLoop(); });
    return device_result::kOk;
  }

  DeviceResult Pause() override { return SetCapturing(false); }
  DeviceResult Resume() override { return SetCapturing(true); }

  DeviceResult Stop() override {
    if (!pcm_) return device_result::kInvalidHandle;
    running_ = false;
    if (reader_.joinable()) reader_.join();
    snd_pcm_drop(pcm_);
    return device_result::kOk;
  }

  std::size_t Captured() override { return captured_.size(); }
  bool WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) override {
    return captured_.WaitFor(bytes, timeout);
  }
  std::vector<std::uint8_t> Take() override { return captured_.Take(); }

  void Close() override {
    if (!pcm_) return;
    Stop();
    snd_pcm_close(pcm_);
    pcm_ = nullptr;
  }

private:
  DeviceResult SetCapturing(bool on) {
    if (!pcm_ || !reader_.joinable()) return device_result::kInvalidHandle;
    captured_.SetCapturing(on);
    return device_result::kOk;
  }

  void ReadLoop() {
    std::vector<std::uint8_t> chunk(setup_.period_frames * frame_bytes_);
    const int count = snd_pcm_poll_descriptors_count(pcm_);
    std::vector<pollfd> fds(static_cast<std::size_t>(count > 0 ? count : 0));
    snd_pcm_poll_descriptors(pcm_, fds.data(), static_cast<unsigned>(fds.size()));
    while (running_) {
      ::poll(fds.data(), fds.size(), 100);
      for (;;) {
        const snd_pcm_sframes_t n = snd_pcm_readi(pcm_, chunk.data(), setup_.period_frames);
        if (n == -EAGAIN || n == 0) break;
        if (n < 0) {
          if (snd_pcm_recover(pcm_, static_cast<int>(n), 1) < 0 || snd_pcm_start(pcm_) < 0)
            running_ = false;
          break;
        }
        captured_.Append(chunk.data(), static_cast<std::size_t>(n) * frame_bytes_);
      }
    }
  }

  std::string device_;
  snd_pcm_t* pcm_ = nullptr;
  AlsaSetup setup_;
  std::uint32_t frame_bytes_ = 1;
  std::atomic<bool> running_{false};
  std::thread reader_;
  CaptureBuffer captured_;
};

} // namespace

std::unique_ptr<AudioSource> MakeAlsaSource(const std::string& device) {
  snd_pcm_t* probe = nullptr;
  if (AlsaOpen(device, SND_PCM_STREAM_CAPTURE, probe) != device_result::kOk) return nullptr;
  snd_pcm_close(probe);
  return std::make_unique<AlsaSource>(device);
}

} // namespace vntts
