// SPDX-License-Identifier: MIT
#pragma once
// Setting up an ALSA PCM for one of our formats, shared by the ALSA sink and source.
#include <string>

#include <alsa/asoundlib.h>

#include "audio/device_result.h"
#include "audio/wave_format.h"

namespace vntts {

struct AlsaSetup {
  snd_pcm_uframes_t buffer_frames = 0;
  snd_pcm_uframes_t period_frames = 0;
  bool can_pause = false;
};

DeviceResult AlsaErrorToResult(int error);
// Opens the PCM ("default" when the name is empty) in non-blocking mode.
DeviceResult AlsaOpen(const std::string& device, snd_pcm_stream_t direction, snd_pcm_t*& pcm);
// Interleaved access, exact format, channels and rate, about 200 ms of buffer in 50 ms
// periods.
DeviceResult AlsaConfigure(snd_pcm_t* pcm, const WaveFormat& format, AlsaSetup& setup);

} // namespace vntts
