// SPDX-License-Identifier: MIT
#pragma once
// Where sinks and sources come from. The system one picks a backend by VNTTS_AUDIO
// ("pulse", "alsa" or "null"); without it, PulseAudio and then ALSA, whichever answers
// first. Tests hand the wave device their own.
#include <memory>
#include <string>

#include "audio/audio_sink.h"
#include "audio/audio_source.h"

namespace vntts {

// What a device can do, as the wave device checks it: the twelve standard-format bits
// (mono/stereo x 8/16-bit x 11025/22050/44100 Hz), the channel count and pitch support (every
// output has it: speech is pitch-shifted in software before it reaches the device).
struct DeviceCapabilities {
  static constexpr std::uint32_t kAllStandardFormats = 0xFFF;
  std::uint32_t formats = kAllStandardFormats;
  std::uint16_t channels = 2;
  bool pitch = true;
};

class AudioSystem {
public:
  virtual ~AudioSystem() = default;
  // A sink ready to open a stream, or null when there is no output device at all.
  virtual std::unique_ptr<AudioSink> MakeSink() = 0;
  // A sink on a named output (a PulseAudio sink or an ALSA PCM), null when it cannot be
  // reached. Systems without named outputs give their default sink.
  virtual std::unique_ptr<AudioSink> MakeNamedSink(const std::string& device) {
    (void)device;
    return MakeSink();
  }
  // A source ready to open, or null when there is no input device.
  virtual std::unique_ptr<AudioSource> MakeSource() = 0;
  virtual DeviceCapabilities OutputCapabilities() = 0;
  virtual DeviceCapabilities InputCapabilities() = 0;
};

// Backends by name. Each gives null when it cannot reach its sound system. The device name
// picks a PulseAudio sink/source or an ALSA PCM; empty means the default.
std::unique_ptr<AudioSink> MakePulseSink(const std::string& device = {});
std::unique_ptr<AudioSink> MakeAlsaSink(const std::string& device = {});
std::unique_ptr<AudioSink> make_null_sink();
std::unique_ptr<AudioSource> MakePulseSource(const std::string& device = {});
std::unique_ptr<AudioSource> MakeAlsaSource(const std::string& device = {});
std::unique_ptr<AudioSource> make_null_source();

// The system's sound, chosen by VNTTS_AUDIO as read now. An unknown name opens nothing,
// so a misspelt choice is reported instead of silently playing elsewhere.
std::unique_ptr<AudioSystem> make_system_audio();
// The same with the choice given; an empty name tries PulseAudio, then ALSA. The output
// device name selects a named PulseAudio sink or ALSA PCM.
std::unique_ptr<AudioSystem> make_system_audio(const std::string& backend,
                                               const std::string& output_device = {});

} // namespace vntts
