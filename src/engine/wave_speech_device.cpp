// SPDX-License-Identifier: MIT
#include "engine/wave_speech_device.h"

#include <filesystem>
#include <system_error>

#include "audio/wave_appender.h"
#include "audio/wave_texts.h"
#include "audio/wave_writing.h"
#include "engine/host_code.h"
#include "engine/output_target.h"

namespace vntts {
namespace {

// Notification calls running on this thread (a callback may start a nested one through PlayWave).
thread_local int notifications_on_this_thread = 0;

WaveFormat FormatOf(const OutputLayout& l) {
  return WaveFormat::Pcm(l.channels, l.samples_per_second, l.bits_per_sample);
}

OutputLayout LayoutOf(const WaveFormat& f) {
  return {f.channels, f.samples_per_second, f.bits_per_sample};
}

class Playback final : public SentenceSink {
public:
  explicit Playback(WaveDevice& device) : device_(device) {}
  OutputLayout Layout() override { return LayoutOf(device_.Format()); }

  bool Put(PlayableSentence& sentence, const std::atomic<bool>& stop) override {
    auto block = std::make_shared<const std::vector<std::uint8_t>>(std::move(sentence.bytes));
    device_.AssignSamples(*block); // the wave buffer shows the last sentence
    WaveDevice::Sound sound;
    sound.format = FormatOf(sentence.layout);
    sound.bytes = block->size();
    sound.block = std::move(block);
    sound.own_events = std::move(sentence.events);
    // A sentence waits for a play that is still ending (one whose notification function
    // started this speech) rather than being refused.
    const DeviceResult r = device_.PlaySound(std::move(sound), {&stop, true});
    // A device that cannot play says so once, not once per sentence.
    return r == device_result::kOk;
  }

private:
  WaveDevice& device_;
};

class FileWriter final : public SentenceSink {
public:
  FileWriter(WaveDevice& device, std::string path, Messages& messages)
      : device_(device), path_(std::move(path)), messages_(messages), appender_(path_, messages) {}
  OutputLayout Layout() override { return LayoutOf(device_.Format()); }

  bool Put(PlayableSentence& sentence, const std::atomic<bool>&) override {
    // Files get no events, and neither do the client's survive writing one.
    device_.RemoveAllEvents();
    const OutputLayout& l = sentence.layout;
    int result;
    std::error_code ec;
    // Once the file is held open for appending, the sentences of this job go on into it.
    if (!appender_.IsOpen() && !std::filesystem::exists(path_, ec)) {
      result = WriteWaveFile(path_, FormatOf(l), sentence.bytes, {}, messages_);
      if (result == 0) {
        created_ = true;
        messages_.Report(wave_text::kComplete, "", MessageIcon::kInformation);
      }
    } else {
      result =
          appender_.Append(sentence.bytes.data(), static_cast<std::uint32_t>(sentence.bytes.size()),
                           l.channels, l.samples_per_second, l.bits_per_sample);
    }
    device_.RemoveAllEvents();
    return result == 0;
  }

  std::string CreatedFile() const override { return created_ ? path_ : std::string(); }

private:
  WaveDevice& device_;
  std::string path_;
  Messages& messages_;
  WaveAppender appender_;
  bool created_ = false;
};

} // namespace

VNEvent ToPublicEvent(const EventRecord& e) {
  VNEvent out{};
  out.kind = e.kind;
  out.position = e.position;
  out.text_start = e.text_start;
  out.text_length = e.text_length;
  for (std::size_t i = 0; i < 5; ++i)
    out.param[i] = e.params[i];
  return out;
}

EventRecord FromPublicEvent(const VNEvent& e) {
  EventRecord out;
  out.kind = e.kind;
  out.position = e.position;
  out.text_start = e.text_start;
  out.text_length = e.text_length;
  for (std::size_t i = 0; i < 5; ++i)
    out.params[i] = e.param[i];
  return out;
}

WaveSpeechDevice::WaveSpeechDevice(WaveDevice& device, Messages& messages)
    : device_(device), messages_(messages) {
  // The device calls through here for every event, so each one sees the target as it is then.
  device_.SetNotify([this](const EventRecord& e) { Notify(e); });
}

bool WaveSpeechDevice::SetClientNotify(VNNotifyProc notify, std::uintptr_t user) {
  std::unique_lock lock(mutex_);
  if (notify == notify_ && user == user_) return true;
  notify_ = notify;
  user_ = user;
  ++generation_;
  old_calls_ = running_calls_;
  // Inside a notification the running call is the caller's own (or one it may be waiting for);
  // a worker thread must not wait for host code either.
  if (notifications_on_this_thread > 0 || CurrentWorkerMark()) return old_calls_ == 0;
  return call_returned_.wait_for(lock, kOldCallWait, [this] { return old_calls_ == 0; });
}

bool WaveSpeechDevice::HasNotify() {
  std::lock_guard lock(mutex_);
  return notify_ != nullptr;
}

void WaveSpeechDevice::Notify(const EventRecord& event) {
  VNNotifyProc notify;
  std::uintptr_t user;
  std::uint64_t generation;
  {
    std::lock_guard lock(mutex_);
    notify = notify_;
    user = user_;
    generation = generation_;
    if (!notify) return;
    ++running_calls_;
  }
  {
    HostCodeScope host;
    ++notifications_on_this_thread;
    notify(user, ToPublicEvent(event));
    --notifications_on_this_thread;
  }
  {
    std::lock_guard lock(mutex_);
    --running_calls_;
    if (generation != generation_) --old_calls_;
  }
  call_returned_.notify_all();
}

std::unique_ptr<SentenceSink> WaveSpeechDevice::MakePlayback() {
  return std::make_unique<Playback>(device_);
}

std::unique_ptr<SentenceSink> WaveSpeechDevice::MakeFileWriter(const std::string& path) {
  return std::make_unique<FileWriter>(device_, path, messages_);
}

void WaveSpeechDevice::OfferOutput(VNOutputHandle output) {
  std::lock_guard lock(mutex_);
  if (output_ != 0 || output == 0) return;
  output_ = output;
  // The name is copied now: the host may close its handle once the speak call returns.
  device_.SetOutputDevice(ToOutputTarget(output)->device_name);
}

VNOutputHandle WaveSpeechDevice::output() const {
  std::lock_guard lock(mutex_);
  return output_;
}

void WaveSpeechDevice::ForgetOutput(VNOutputHandle output) {
  std::lock_guard lock(mutex_);
  if (output == 0 || output != output_) return;
  output_ = 0;
  device_.SetOutputDevice({});
}

} // namespace vntts
