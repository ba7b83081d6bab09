// SPDX-License-Identifier: MIT
#include "audio/recorder.h"

#include "audio/device_texts.h"
#include "audio/wave_writing.h"

namespace vntts {

DeviceResult Recorder::Start(const WaveFormat& format) {
  Close();
  take_.clear();
  format_ = format;
  source_ = audio_.MakeSource();
  // Like the recorder people know, a device that does not open is reported and the format
  // step then fails for want of a device.
  if (!source_) messages_.Report(device_text::kRecordOpenFailed, "", MessageIcon::kInformation);
  const DeviceResult params = source_ ? source_->Open(format) : device_result::kInvalidHandle;
  if (params != device_result::kOk) {
    Close();
    messages_.Report(device_text::kRecordParamsFailed, "", MessageIcon::kInformation);
    return params;
  }
  if (const DeviceResult started = source_->Start(); started != device_result::kOk) {
    Close();
    messages_.Report(device_text::kRecordStartFailed, "", MessageIcon::kInformation);
    return started;
  }
  return device_result::kOk;
}

DeviceResult Recorder::Pause() {
  return source_ ? source_->Pause() : device_result::kInvalidHandle;
}

DeviceResult Recorder::Resume() {
  return source_ ? source_->Resume() : device_result::kInvalidHandle;
}

DeviceResult Recorder::Stop() {
  if (!source_) return device_result::kInvalidHandle;
  const DeviceResult r = source_->Stop();
  Collect();
  return r;
}

bool Recorder::WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) {
  if (!source_) return take_.size() >= bytes;
  return source_->WaitForBytes(bytes > take_.size() ? bytes - take_.size() : 0, timeout);
}

void Recorder::TrimTo(std::size_t bytes) {
  Collect();
  if (take_.size() > bytes) take_.resize(bytes);
}

DeviceResult Recorder::Save(const std::string& path) {
  if (source_) {
    source_->Stop();
    Collect();
  }
  DeviceResult r = device_result::kOk;
  if (!path.empty() && WriteWaveFile(path, format_, take_, {}, messages_) != 0)
    r = device_result::kError;
  Close();
  return r;
}

void Recorder::Close() {
  if (source_) {
    source_->Close();
    source_.reset();
  }
}

void Recorder::Collect() {
  if (!source_) return;
  auto more = source_->Take();
  take_.insert(take_.end(), more.begin(), more.end());
}

} // namespace vntts
