// SPDX-License-Identifier: MIT
#include "audio/alsa_pcm.h"

#include <cerrno>

namespace vntts {

DeviceResult AlsaErrorToResult(int error) {
  switch (-error) {
  case 0:
    return device_result::kOk;
  case ENOENT:
  case ENODEV:
  case ENXIO:
    return device_result::kBadDeviceId;
  case EBUSY:
  case EACCES:
  case EPERM:
    return device_result::kAllocated;
  case EBADFD:
    return device_result::kInvalidHandle;
  case ENOMEM:
    return device_result::kNoMemory;
  case EINVAL:
    return device_result::kBadFormat;
  case ENOSYS:
    return device_result::kNotSupported;
  default:
    return device_result::kError;
  }
}

namespace {

// ALSA's own error handler prints to stderr. Looking for a device that is not there is an
// expected answer here, reported through our messages, so it stays quiet while we look.
void QuietAlsaErrors(const char*, int, const char*, int, const char*, ...) {}

} // namespace

DeviceResult AlsaOpen(const std::string& device, snd_pcm_stream_t direction, snd_pcm_t*& pcm) {
  pcm = nullptr;
  const snd_lib_error_handler_t previous = snd_lib_error;
  snd_lib_error_set_handler(QuietAlsaErrors);
  const int rc =
      snd_pcm_open(&pcm, device.empty() ? "default" : device.c_str(), direction, SND_PCM_NONBLOCK);
  snd_lib_error_set_handler(previous);
  if (rc < 0) {
    pcm = nullptr;
    return AlsaErrorToResult(rc);
  }
  return device_result::kOk;
}

DeviceResult AlsaConfigure(snd_pcm_t* pcm, const WaveFormat& format, AlsaSetup& setup) {
  const snd_pcm_format_t sample = format.bits_per_sample == 8    ? SND_PCM_FORMAT_U8
                                  : format.bits_per_sample == 16 ? SND_PCM_FORMAT_S16_LE
                                                                 : SND_PCM_FORMAT_UNKNOWN;
  if (!format.DevicePcm()) return device_result::kBadFormat;
  snd_pcm_hw_params_t* hw = nullptr;
  snd_pcm_hw_params_alloca(&hw);
  unsigned buffer_us = 200'000;
  unsigned period_us = 50'000;
  if (snd_pcm_hw_params_any(pcm, hw) < 0 ||
      snd_pcm_hw_params_set_access(pcm, hw, SND_PCM_ACCESS_RW_INTERLEAVED) < 0 ||
      snd_pcm_hw_params_set_format(pcm, hw, sample) < 0 ||
      snd_pcm_hw_params_set_channels(pcm, hw, format.channels) < 0 ||
      snd_pcm_hw_params_set_rate_resample(pcm, hw, 1) < 0 ||
      snd_pcm_hw_params_set_rate(pcm, hw, format.samples_per_second, 0) < 0 ||
      snd_pcm_hw_params_set_buffer_time_near(pcm, hw, &buffer_us, nullptr) < 0 ||
      snd_pcm_hw_params_set_period_time_near(pcm, hw, &period_us, nullptr) < 0)
    return device_result::kBadFormat;
  if (const int rc = snd_pcm_hw_params(pcm, hw); rc < 0) return AlsaErrorToResult(rc);
  snd_pcm_hw_params_get_buffer_size(hw, &setup.buffer_frames);
  snd_pcm_hw_params_get_period_size(hw, &setup.period_frames, nullptr);
  setup.can_pause = snd_pcm_hw_params_can_pause(hw) != 0;
  return device_result::kOk;
}

} // namespace vntts
