// SPDX-License-Identifier: MIT
#include "audio/audio_system.h"

#include <cstdlib>

namespace vntts {
namespace {

class SystemAudio final : public AudioSystem {
public:
  SystemAudio(std::string backend, std::string output_device)
      : backend_(std::move(backend)), output_device_(std::move(output_device)) {}

  std::unique_ptr<AudioSink> MakeSink() override {
    if (backend_ == "pulse") return MakePulseSink(output_device_);
    if (backend_ == "alsa") return MakeAlsaSink(output_device_);
    if (backend_ == "null") return make_null_sink();
    if (!backend_.empty()) return nullptr;
    if (auto sink = MakePulseSink(output_device_)) return sink;
    return MakeAlsaSink(output_device_);
  }

  std::unique_ptr<AudioSink> MakeNamedSink(const std::string& device) override {
    SystemAudio named(backend_, device);
    return named.MakeSink();
  }

  std::unique_ptr<AudioSource> MakeSource() override {
    if (backend_ == "pulse") return MakePulseSource();
    if (backend_ == "alsa") return MakeAlsaSource();
    if (backend_ == "null") return make_null_source();
    if (!backend_.empty()) return nullptr;
    if (auto source = MakePulseSource()) return source;
    return MakeAlsaSource();
  }

  // Every backend converts to what the hardware takes, so all standard formats are there.
  DeviceCapabilities OutputCapabilities() override { return {}; }
  DeviceCapabilities InputCapabilities() override { return {}; }

private:
  std::string backend_;
  std::string output_device_;
};

} // namespace

std::unique_ptr<AudioSystem> make_system_audio(const std::string& backend,
                                               const std::string& output_device) {
  return std::make_unique<SystemAudio>(backend, output_device);
}

std::unique_ptr<AudioSystem> make_system_audio() {
  const char* choice = std::getenv("VNTTS_AUDIO");
  return make_system_audio(choice ? choice : "", {});
}

} // namespace vntts
