#include "engine/wave_speech_device.h"

#include "engine/output_target.h"

#include <filesystem>
#include <system_error>

#include "engine/sentence_assembler.h"

namespace vntts {

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

OutputLayout WaveSpeechDevice::Layout() {
  return {device_.channels(), device_.sample_rate(), device_.bits()};
}

void WaveSpeechDevice::SetClientNotify(VNNotifyProc notify, std::uintptr_t user) {
  {
    std::lock_guard lock(mutex_);
    notify_ = notify;
    user_ = user;
  }
  if (notify)
    device_.SetNotify([notify, user](const EventRecord& e) { notify(user, ToPublicEvent(e)); });
  else
    device_.SetNotify(nullptr);
}

bool WaveSpeechDevice::HasNotify() {
  std::lock_guard lock(mutex_);
  return notify_ != nullptr;
}

void WaveSpeechDevice::Notify(const EventRecord& event) {
  VNNotifyProc notify;
  std::uintptr_t user;
  {
    std::lock_guard lock(mutex_);
    notify = notify_;
    user = user_;
  }
  if (notify) notify(user, ToPublicEvent(event));
}

int WaveSpeechDevice::PlaySentence(const PlayableSentence& sentence) {
  const WaveFormat before = device_.format();
  const std::vector<EventRecord> client = device_.events();
  device_.SetFormat(WaveFormat::pcm(sentence.layout.channels, sentence.layout.samples_per_second,
                                    sentence.layout.bits_per_sample));
  device_.AssignSamples(sentence.bytes);
  // Added last to first, each lands before the records at its position: the sentence's list
  // keeps its own order and goes ahead of client events at the same position.
  for (auto it = sentence.events.rbegin(); it != sentence.events.rend(); ++it)
    device_.AddEvent(*it);
  const DeviceResult result = device_.Play();
  // The sentence's events leave the list again; the client's stay, in their order.
  device_.RemoveAllEvents();
  for (auto it = client.rbegin(); it != client.rend(); ++it)
    device_.AddEvent(*it);
  device_.SetFormat(before);
  return static_cast<int>(result);
}

int WaveSpeechDevice::WriteSentence(const PlayableSentence& sentence, const std::string& path) {
  // Files get no events, and neither do the client's survive writing one.
  device_.RemoveAllEvents();
  const OutputLayout& l = sentence.layout;
  int result;
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) {
    const WaveFormat before = device_.format();
    device_.SetFormat(WaveFormat::pcm(l.channels, l.samples_per_second, l.bits_per_sample));
    device_.AssignSamples(sentence.bytes);
    result = device_.Save(path);
    device_.SetFormat(before);
  } else {
    result = WaveBuffer::Append(path, sentence.bytes.data(),
                                static_cast<std::uint32_t>(sentence.bytes.size()), l.channels,
                                l.samples_per_second, l.bits_per_sample, messages_);
  }
  device_.RemoveAllEvents();
  return result;
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

} // namespace vntts
