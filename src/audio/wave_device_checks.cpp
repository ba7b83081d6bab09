// SPDX-License-Identifier: MIT
// The wave device's error reporter, its record-format check and its format codes.
#include <array>
#include <utility>

#include "audio/device_texts.h"
#include "audio/format_codes.h"
#include "audio/wave_device.h"

namespace vntts {
namespace {

constexpr std::array<std::pair<DeviceResult, std::string_view>, 11> kDeviceMessages{{
    {2, "Specified device ID is out of range!"},
    {4, "Specified resource is alread allocated!"},
    {5, "Specified device handle is invalid."},
    {6, "No device driver is present."},
    {7, "Unable to allocate or lock memory."},
    {8, "Specified device is synchronous and does not support pausing."},
    {32, "Attempted to open with unsupported wave format!"},
    {33, "The data block pointed to by the pwh parameter is still in the queue."},
    {34, "The data block pointed to by the pwh parameter hasn't been prepared."},
    {35, "Attempted to open a synchronous driver without specifying the WAVE_ALLOWSYNC Flag!"},
    {0, ""},
}};

} // namespace

std::string_view DeviceResultText(DeviceResult code) {
  for (const auto& [known, text] : kDeviceMessages)
    if (known == code && code != device_result::kOk) return text;
  return device_text::kUnknownError;
}

bool WaveDevice::CheckResult(DeviceResult code) {
  if (code == device_result::kOk) return false;
  const std::string_view text = DeviceResultText(code);
  Report(text);
  return text != device_text::kUnknownError;
}

int WaveDevice::CanRecord() {
  if (!audio_->MakeSource()) {
    Report(device_text::kNoInputDevice);
    return 0;
  }
  const DeviceCapabilities caps = audio_->InputCapabilities();
  if (caps.channels < Channels()) {
    Report(device_text::kNoStereo);
    return 0;
  }
  // The 8-bit formats are checked against the device's bits. The 16-bit check only runs
  // for a bit depth of 6, so every 16-bit format passes: that is how hosts have always
  // found it, and it stays.
  const std::uint16_t checked_bits = Bits() == 8 ? 8 : Bits() == 6 ? 16 : 0;
  if (checked_bits != 0) {
    const std::uint32_t bit = CapabilityBitOf(Channels() >= 2 ? 2 : 1, SampleRate(), checked_bits);
    if (bit != 0 && !(caps.formats & bit)) {
      Report(device_text::kFormatUnsupported);
      return 0;
    }
  }
  return 1;
}

int WaveDevice::SetFormatCode(std::uint32_t code) {
  const auto chosen = FormatForCode(code, OutputCapabilities().formats);
  if (!chosen) return 0;
  SetFormat(WaveFormat::Pcm(chosen->channels, chosen->rate, chosen->bits));
  return 1;
}

DeviceResult WaveDevice::StartRecording() {
  return recorder_.Start(Format());
}
DeviceResult WaveDevice::PauseRecording() {
  return recorder_.Pause();
}
DeviceResult WaveDevice::ResumeRecording() {
  return recorder_.Resume();
}
DeviceResult WaveDevice::StopRecording() {
  return recorder_.Stop();
}
DeviceResult WaveDevice::SaveRecording(const std::string& path) {
  return recorder_.Save(path);
}
void WaveDevice::CloseRecording() {
  recorder_.Close();
}

DeviceResult WaveDevice::RecordToFile(const std::string& path, std::uint32_t milliseconds) {
  if (const DeviceResult r = recorder_.Start(Format()); r != device_result::kOk) return r;
  const std::size_t wanted =
      std::size_t{milliseconds} * Format().samples_per_second / 1000 * Format().FrameBytes();
  // A source that stalls still ends the recording a little after its time.
  recorder_.WaitForBytes(wanted, std::chrono::milliseconds(milliseconds) + std::chrono::seconds(2));
  recorder_.Stop();
  recorder_.TrimTo(wanted);
  return recorder_.Save(path);
}

} // namespace vntts
