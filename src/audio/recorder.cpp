#include "audio/recorder.h"

#include "audio/device_texts.h"
#include "audio/wave_writing.h"

namespace vntts {

DeviceResult Recorder::Start(const WaveFormat& format) {
  Close();
  take_.clear();
  format_ = format;
  source_ = audio_.make_source();
  // Like the recorder people know, a device that does not open is reported and the format
  // step then fails for want of a device.
  if (!source_) messages_.Report(device_text::kRecordOpenFailed, "", MessageIcon::kInformation);
  const DeviceResult params = source_ ? source_->open(format) : device_result::kInvalidHandle;
  if (params != device_result::kOk) {
    Close();
    messages_.Report(device_text::kRecordParamsFailed, "", MessageIcon::kInformation);
    return params;
  }
  if (const DeviceResult started = source_->start(); started != device_result::kOk) {
    Close();
    messages_.Report(device_text::kRecordStartFailed, "", MessageIcon::kInformation);
    return started;
  }
  return device_result::kOk;
}

DeviceResult Recorder::Pause() {
  return source_ ? source_->pause() : device_result::kInvalidHandle;
}

DeviceResult Recorder::Resume() {
  return source_ ? source_->resume() : device_result::kInvalidHandle;
}

DeviceResult Recorder::Stop() {
  if (!source_) return device_result::kInvalidHandle;
  const DeviceResult r = source_->stop();
  collect();
  return r;
}

bool Recorder::WaitForBytes(std::size_t bytes, std::chrono::milliseconds timeout) {
  if (!source_) return take_.size() >= bytes;
  return source_->wait_for_bytes(bytes > take_.size() ? bytes - take_.size() : 0, timeout);
}

void Recorder::TrimTo(std::size_t bytes) {
  collect();
  if (take_.size() > bytes) take_.resize(bytes);
}

DeviceResult Recorder::Save(const std::string& path) {
  if (source_) {
    source_->stop();
    collect();
  }
  DeviceResult r = device_result::kOk;
  if (!path.empty() && write_wave_file(path, format_, take_, {}, messages_) != 0)
    r = device_result::kError;
  Close();
  return r;
}

void Recorder::Close() {
  if (source_) {
    source_->close();
    source_.reset();
  }
}

void Recorder::collect() {
  if (!source_) return;
  auto more = source_->take();
  take_.insert(take_.end(), more.begin(), more.end());
}

} // namespace vntts
