// SPDX-License-Identifier: MIT
#pragma once
// A scripted sound system for device tests that need no sound server: the sink hears a
// fixed number of frames per wait and records what it was asked to do.
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "audio/audio_system.h"

namespace vntts::test {

struct FakeSinkState {
  std::mutex mutex;
  DeviceResult open_result = 0;
  DeviceResult position_result = 0;
  DeviceResult pause_result = 0;
  std::uint64_t frames_per_wait = 100;
  std::vector<std::uint8_t> written;
  std::uint64_t heard = 0;
  bool finished = false;
  bool paused = false;
  bool reset = false;
  int closes = 0;
  WaveFormat format;
  std::vector<std::string> calls;
};

class FakeSink final : public AudioSink {
public:
  explicit FakeSink(std::shared_ptr<FakeSinkState> s) : s_(std::move(s)) {}
  std::string_view Backend() const override { return "fake"; }
  DeviceResult Open(const WaveFormat& f) override {
    std::lock_guard l(s_->mutex);
    s_->format = f;
    return s_->open_result;
  }
  std::size_t Writable() override { return 1 << 20; }
  DeviceResult Write(std::span<const std::uint8_t> b) override {
    std::lock_guard l(s_->mutex);
    s_->written.insert(s_->written.end(), b.begin(), b.end());
    return 0;
  }
  DeviceResult Finish() override {
    std::lock_guard l(s_->mutex);
    s_->finished = true;
    return 0;
  }
  bool Drained() override {
    std::lock_guard l(s_->mutex);
    return s_->reset || (s_->finished && s_->heard >= frames_written());
  }
  DeviceResult Position(std::uint64_t& frames) override {
    std::lock_guard l(s_->mutex);
    frames = s_->heard;
    return s_->position_result;
  }
  DeviceResult Pause() override {
    std::lock_guard l(s_->mutex);
    s_->calls.push_back("pause");
    if (s_->pause_result == 0) s_->paused = true;
    return s_->pause_result;
  }
  DeviceResult Resume() override {
    std::lock_guard l(s_->mutex);
    s_->calls.push_back("resume");
    s_->paused = false;
    return 0;
  }
  DeviceResult Reset() override {
    std::lock_guard l(s_->mutex);
    s_->calls.push_back("reset");
    s_->reset = true;
    return 0;
  }
  void Wait(std::chrono::microseconds) override {
    std::lock_guard l(s_->mutex);
    if (!s_->paused) s_->heard = std::min(s_->heard + s_->frames_per_wait, frames_written());
  }
  void Wake() override {}
  void Close() override {
    std::lock_guard l(s_->mutex);
    ++s_->closes;
  }

private:
  std::uint64_t frames_written() const {
    const auto fb = s_->format.FrameBytes();
    return fb ? s_->written.size() / fb : 0;
  }
  std::shared_ptr<FakeSinkState> s_;
};

class FakeAudioSystem final : public AudioSystem {
public:
  std::shared_ptr<FakeSinkState> sink = std::make_shared<FakeSinkState>();
  bool has_output = true;
  bool has_input = true;
  DeviceCapabilities output_caps;
  DeviceCapabilities input_caps;

  std::unique_ptr<AudioSink> MakeSink() override {
    return has_output ? std::make_unique<FakeSink>(sink) : nullptr;
  }
  std::unique_ptr<AudioSource> MakeSource() override {
    return has_input ? make_null_source() : nullptr;
  }
  DeviceCapabilities OutputCapabilities() override { return output_caps; }
  DeviceCapabilities InputCapabilities() override { return input_caps; }
};

} // namespace vntts::test
