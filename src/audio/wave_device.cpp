// SPDX-License-Identifier: MIT
#include "audio/wave_device.h"

#include <algorithm>
#include <vector>

#include "audio/device_texts.h"
#include "audio/volume_gain.h"

namespace vntts {
namespace {

// Longest wait between passes, so that the message pump runs often enough for a UI.
constexpr std::chrono::microseconds kLongestWait{10'000};

} // namespace

// What one play works from: its own copy of everything, so that nothing the host changes
// meanwhile can pull the ground from under it. The buffer's event list is the exception: it is
// read again whenever it changes, so that events added or removed while a sentence plays count.
struct WaveDevice::PlayRun {
  Sound sound;
  std::uint32_t loops = 1;
  std::uint32_t frame = 1;
  std::uint32_t rate = 1;
  std::size_t own_next = 0;
  std::vector<EventRecord> list;
  std::vector<std::uint64_t> list_serials;
  std::vector<bool> list_done;
  std::uint64_t list_version = ~std::uint64_t{0};
  Control control;
  Notify notify;
  MessagePump pump;
  // Where feeding the sink stands.
  std::size_t offset = 0;
  std::uint32_t loops_written = 0;
  bool finished = false;
};

WaveDevice::WaveDevice(Messages& messages, std::unique_ptr<AudioSystem> audio)
    : WaveBuffer(messages), audio_(audio ? std::move(audio) : make_system_audio()),
      recorder_(*audio_, messages) {
  RefreshCapabilities();
}

WaveDevice::~WaveDevice() {
  Stop();
}

void WaveDevice::Report(std::string_view text) {
  messages().Report(text, "", MessageIcon::kInformation);
}

void WaveDevice::SetOutputDevice(std::string name) {
  std::lock_guard lock(control_mutex_);
  output_device_ = std::move(name);
}

std::string WaveDevice::OutputDevice() {
  std::lock_guard lock(control_mutex_);
  return output_device_;
}

void WaveDevice::SetNotify(Notify notify) {
  std::lock_guard lock(control_mutex_);
  notify_ = std::move(notify);
}

void WaveDevice::SetMessagePump(MessagePump pump) {
  std::lock_guard lock(control_mutex_);
  pump_ = std::move(pump);
}

// ---- The buffer ------------------------------------------------------------------------------

int WaveDevice::Load(const std::string& path) {
  std::lock_guard lock(buffer_mutex_);
  const int result = WaveBuffer::Load(path);
  event_serials_.clear();
  for (std::size_t i = 0; i < WaveBuffer::Events().size(); ++i)
    event_serials_.push_back(next_serial_++);
  ++events_version_;
  return result;
}

int WaveDevice::Save(const std::string& path, std::uint32_t first_sample,
                     std::uint32_t end_sample) {
  std::lock_guard lock(buffer_mutex_);
  return WaveBuffer::Save(path, first_sample, end_sample);
}

std::uint32_t WaveDevice::SampleCount() {
  std::lock_guard lock(buffer_mutex_);
  return WaveBuffer::SampleCount();
}

std::uint8_t* WaveDevice::data() {
  std::lock_guard lock(buffer_mutex_);
  return WaveBuffer::data();
}

void WaveDevice::AssignSamples(std::span<const std::uint8_t> bytes) {
  std::lock_guard lock(buffer_mutex_);
  WaveBuffer::AssignSamples(bytes);
}

void WaveDevice::Release() {
  std::lock_guard lock(buffer_mutex_);
  WaveBuffer::Release();
}

WaveFormat WaveDevice::Format() {
  std::lock_guard lock(buffer_mutex_);
  return WaveBuffer::Format();
}

void WaveDevice::SetFormat(const WaveFormat& format) {
  std::lock_guard lock(buffer_mutex_);
  WaveBuffer::SetFormat(format);
}

std::size_t WaveDevice::AddEvent(const EventRecord& event) {
  std::lock_guard lock(buffer_mutex_);
  const auto& list = WaveBuffer::Events();
  const auto at = std::find_if(list.begin(), list.end(),
                               [&](const EventRecord& e) { return e.position >= event.position; });
  event_serials_.insert(event_serials_.begin() + (at - list.begin()), next_serial_++);
  const std::size_t count = WaveBuffer::AddEvent(event);
  ++events_version_;
  return count;
}

void WaveDevice::RemoveAllEvents() {
  std::lock_guard lock(buffer_mutex_);
  WaveBuffer::RemoveAllEvents();
  event_serials_.clear();
  ++events_version_;
}

std::vector<EventRecord> WaveDevice::CopyEvents() {
  std::lock_guard lock(buffer_mutex_);
  return WaveBuffer::Events();
}

// ---- Playing ---------------------------------------------------------------------------------

DeviceResult WaveDevice::Play(std::uint32_t first_sample, std::uint32_t end_sample) {
  Sound sound;
  {
    // The range is copied: the host may load or replace the wave while it plays.
    std::lock_guard lock(buffer_mutex_);
    sound.format = WaveBuffer::Format();
    const std::uint32_t frame = sound.format.FrameBytes();
    const std::uint32_t count = frame ? DataLength() / frame : 0;
    const std::uint32_t end = std::min(end_sample, count);
    // A range that ends before it starts plays nothing, and no event belongs to it.
    if (frame && first_sample > end) return device_result::kOk;
    sound.first_frame = std::min(first_sample, end);
    const std::uint8_t* from = WaveBuffer::data();
    const std::size_t offset = std::size_t{sound.first_frame} * frame;
    sound.bytes = std::size_t{end - sound.first_frame} * frame;
    sound.block = std::make_shared<const std::vector<std::uint8_t>>(
        from ? from + offset : nullptr, from ? from + offset + sound.bytes : nullptr);
  }
  return PlaySound(std::move(sound), {});
}

bool WaveDevice::Cancelled(const Control& control) const {
  return control.cancel && control.cancel->load();
}

// Claims the device for one play. Refused as busy while another play runs, unless the caller
// waits for it; a caller that is cancelled meanwhile gives up without a word.
bool WaveDevice::Register(const Control& control, DeviceResult& refused) {
  std::unique_lock lock(control_mutex_);
  if (phase_ != Phase::kIdle && !control.wait_while_busy) {
    refused = device_result::kAllocated;
    return false;
  }
  control_changed_.wait(lock, [&] { return phase_ == Phase::kIdle || Cancelled(control); });
  if (Cancelled(control)) {
    refused = device_result::kOk;
    return false;
  }
  phase_ = Phase::kOpening;
  paused_ = false;
  stop_requested_ = false;
  playing_ = true;
  return true;
}

void WaveDevice::Unregister() {
  {
    std::lock_guard lock(control_mutex_);
    active_sink_ = nullptr;
    phase_ = Phase::kIdle;
    paused_ = false;
    playing_ = false;
  }
  control_changed_.notify_all();
}

DeviceResult WaveDevice::PlaySound(Sound sound, Control control) {
  DeviceResult refused = device_result::kOk;
  if (!Register(control, refused)) {
    CheckResult(refused);
    return refused;
  }
  std::unique_ptr<AudioSink> sink;
  {
    const std::string named = OutputDevice();
    sink = named.empty() ? audio_->MakeSink() : audio_->MakeNamedSink(named);
  }
  if (!sink) {
    Unregister();
    Report(device_text::kNoOutputDevice);
    return device_result::kOk;
  }
  if (const DeviceResult opened = sink->Open(sound.format); opened != device_result::kOk) {
    Unregister();
    CheckResult(opened);
    sink->Close();
    return opened;
  }

  PlayRun run;
  run.frame = std::max<std::uint32_t>(sound.format.FrameBytes(), 1);
  run.rate = std::max<std::uint32_t>(sound.format.samples_per_second, 1);
  run.loops = loop_count_ >= 2 ? loop_count_.load() : 1;
  run.control = control;
  run.sound = std::move(sound);
  if (!run.sound.block) run.sound.bytes = 0;
  bool stopped_while_opening;
  {
    // Controls that came while the stream was opening take effect now.
    std::lock_guard lock(control_mutex_);
    run.notify = notify_;
    run.pump = pump_;
    stopped_while_opening = stop_requested_ || Cancelled(control);
    if (!stopped_while_opening) {
      active_sink_ = sink.get();
      phase_ = Phase::kOpen;
      if (paused_) CheckResult(sink->Pause());
    }
  }
  if (stopped_while_opening) {
    Unregister();
    sink->Close();
    return device_result::kOk;
  }

  EventRecord start;
  start.kind = static_cast<std::uint32_t>(EventKind::kSoundStart);
  start.params[2] = 1;
  if (run.notify) run.notify(start);

  const DeviceResult result = RunPlay(*sink, run);
  {
    std::lock_guard lock(control_mutex_);
    active_sink_ = nullptr;
    phase_ = Phase::kEnding;
    playing_ = false;
  }
  if (run.notify) {
    EventRecord finish = start;
    finish.kind = static_cast<std::uint32_t>(EventKind::kSoundEnd);
    finish.position = static_cast<std::uint32_t>(run.sound.bytes);
    run.notify(finish);
  }
  sink->Close();
  Unregister();
  return result;
}

// Writes what the sink takes now; after the last loop tells it that nothing more follows.
bool WaveDevice::FeedSink(AudioSink& sink, PlayRun& run, DeviceResult& error) {
  const std::size_t bytes = run.sound.bytes;
  const std::uint8_t* block = bytes ? run.sound.block->data() + run.sound.offset : nullptr;
  std::size_t room = sink.Writable();
  while (room >= run.frame && run.loops_written < run.loops && bytes > 0) {
    std::size_t n = std::min(room, bytes - run.offset);
    n -= n % run.frame;
    if (n == 0) break;
    if ((error = WriteSlice(sink, run, block + run.offset, n)) != 0) return false;
    room -= n;
    run.offset += n;
    if (run.offset == bytes) {
      run.offset = 0;
      ++run.loops_written;
    }
  }
  if (run.loops_written == run.loops || bytes == 0) {
    if ((error = sink.Finish()) != 0) return false;
    run.finished = true;
  }
  return true;
}

DeviceResult WaveDevice::RunPlay(AudioSink& sink, PlayRun& run) {
  for (;;) {
    const bool stopping = [&] {
      std::lock_guard lock(control_mutex_);
      return stop_requested_;
    }() || Cancelled(run.control);
    // Nothing fires once the play was stopped.
    if (stopping) return device_result::kOk;
    DeviceResult error = device_result::kOk;
    if (!run.finished && !FeedSink(sink, run, error)) {
      CheckResult(error);
      return error;
    }

    std::uint64_t heard = 0;
    if (const DeviceResult r = sink.Position(heard); r != 0) {
      CheckResult(r);
      return r;
    }
    // Positions compare as the 32-bit sample numbers the events carry.
    const auto now = static_cast<std::uint32_t>(run.sound.first_frame + heard);
    RefreshListCopy(run, now);
    FireDueEvent(run, now);
    if (run.pump) run.pump();

    if (run.finished && sink.Drained()) return device_result::kOk;

    // Sleep until the next event is due (or the sink wants data, or a control wakes it).
    std::chrono::microseconds timeout = kLongestWait;
    if (run.notify) {
      std::uint32_t due = UINT32_MAX;
      if (run.own_next < run.sound.own_events.size())
        due = run.sound.own_events[run.own_next].position;
      for (std::size_t i = 0; i < run.list.size(); ++i)
        if (!run.list_done[i]) {
          due = std::min(due, run.list[i].position);
          break;
        }
      if (due != UINT32_MAX) {
        if (now >= due) continue; // due already: fire it on the next pass
        const std::uint64_t us = std::uint64_t{due - now} * 1'000'000 / run.rate;
        timeout = std::min(timeout, std::chrono::microseconds(static_cast<std::int64_t>(us) + 1));
      }
    }
    sink.Wait(timeout);
  }
}

// Takes a new copy of the buffer's event list when it has changed. Events fired already stay
// fired; events added at or behind the position already heard wait for the next play.
void WaveDevice::RefreshListCopy(PlayRun& run, std::uint32_t now) {
  if (!run.sound.use_list || events_version_.load() == run.list_version) return;
  std::vector<EventRecord> list;
  std::vector<std::uint64_t> serials;
  std::uint64_t version;
  {
    std::lock_guard lock(buffer_mutex_);
    version = events_version_.load();
    list = WaveBuffer::Events();
    serials = event_serials_;
  }
  const bool first = run.list_version == ~std::uint64_t{0};
  std::vector<bool> done(list.size(), false);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const auto old = std::find(run.list_serials.begin(), run.list_serials.end(), serials[i]);
    if (old != run.list_serials.end())
      done[i] = run.list_done[static_cast<std::size_t>(old - run.list_serials.begin())];
    else if (first)
      done[i] = list[i].position < run.sound.first_frame; // before the range: not played
    else
      done[i] = list[i].position <= now;
  }
  run.list = std::move(list);
  run.list_serials = std::move(serials);
  run.list_done = std::move(done);
  run.list_version = version;
}

// At most one event per pass: the earliest due, the play's own ahead of the list's at one
// position.
void WaveDevice::FireDueEvent(PlayRun& run, std::uint32_t now) {
  if (!run.notify) return;
  const EventRecord* own =
      run.own_next < run.sound.own_events.size() ? &run.sound.own_events[run.own_next] : nullptr;
  std::size_t listed = run.list.size();
  for (std::size_t i = 0; i < run.list.size(); ++i)
    if (!run.list_done[i]) {
      listed = i;
      break;
    }
  const EventRecord* from_list = listed < run.list.size() ? &run.list[listed] : nullptr;
  if (own && (!from_list || own->position <= from_list->position)) {
    if (now < own->position) return;
    const EventRecord event = *own;
    ++run.own_next;
    run.notify(event);
  } else if (from_list && now >= from_list->position) {
    const EventRecord event = *from_list;
    run.list_done[listed] = true;
    run.notify(event);
  }
}

DeviceResult WaveDevice::WriteSlice(AudioSink& sink, const PlayRun& run, const std::uint8_t* bytes,
                                    std::size_t count) {
  const std::uint32_t volume = volume_;
  if (volume == kFullVolume) return sink.Write({bytes, count});
  scratch_.assign(bytes, bytes + count);
  ApplyVolume(scratch_, run.sound.format.bits_per_sample, run.sound.format.channels, volume);
  return sink.Write(scratch_);
}

// ---- Controls --------------------------------------------------------------------------------

DeviceResult WaveDevice::Pause() {
  DeviceResult r = device_result::kOk;
  {
    std::lock_guard lock(control_mutex_);
    if (phase_ != Phase::kOpening && phase_ != Phase::kOpen) return device_result::kInvalidHandle;
    if (active_sink_) r = active_sink_->Pause();
    if (r == device_result::kOk) paused_ = true;
  }
  CheckResult(r);
  return r;
}

DeviceResult WaveDevice::Resume() {
  DeviceResult r = device_result::kOk;
  {
    std::lock_guard lock(control_mutex_);
    if (phase_ != Phase::kOpening && phase_ != Phase::kOpen) return device_result::kInvalidHandle;
    if (active_sink_) r = active_sink_->Resume();
    if (r == device_result::kOk) paused_ = false;
  }
  CheckResult(r);
  return r;
}

DeviceResult WaveDevice::Stop() {
  DeviceResult r = device_result::kOk;
  {
    std::lock_guard lock(control_mutex_);
    if (phase_ == Phase::kIdle) {
      r = device_result::kInvalidHandle;
    } else {
      stop_requested_ = true;
      paused_ = false;
      if (active_sink_) {
        r = active_sink_->Reset();
        active_sink_->Wake();
      }
    }
  }
  control_changed_.notify_all();
  if (r != device_result::kInvalidHandle) CheckResult(r);
  return r;
}

void WaveDevice::WakeWaiting() {
  { std::lock_guard lock(control_mutex_); }
  control_changed_.notify_all();
}

bool WaveDevice::PlayPosition(std::uint64_t& frames) {
  std::lock_guard lock(control_mutex_);
  return active_sink_ && active_sink_->Position(frames) == device_result::kOk;
}

DeviceResult WaveDevice::SetVolume(std::uint32_t volume) {
  volume_ = volume;
  return device_result::kOk;
}

DeviceResult WaveDevice::SetPitch(std::uint32_t pitch) {
  if (OutputCapabilities().pitch) pitch_ = pitch;
  return device_result::kOk;
}

std::uint32_t WaveDevice::GetPitch() const {
  return OutputCapabilities().pitch ? pitch_.load() : 0;
}

std::uint32_t WaveDevice::PitchRangeMaximum() const {
  return OutputCapabilities().pitch ? 0xFFFFFFFF : 0;
}

void WaveDevice::RefreshCapabilities() {
  const DeviceCapabilities caps = audio_->OutputCapabilities();
  std::lock_guard lock(caps_mutex_);
  output_caps_ = caps;
}

DeviceCapabilities WaveDevice::OutputCapabilities() const {
  std::lock_guard lock(caps_mutex_);
  return output_caps_;
}

DeviceResult ProbeOutput(const std::string& name) {
  auto audio = make_system_audio();
  auto sink = audio ? audio->MakeNamedSink(name) : nullptr;
  if (!sink) return device_result::kNoDriver;
  const DeviceResult opened = sink->Open(WaveFormat::Pcm(1, 22050, 16));
  sink->Close();
  return opened;
}

} // namespace vntts
