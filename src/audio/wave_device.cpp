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

struct WaveDevice::PlayRun {
  const std::uint8_t* block = nullptr;
  std::size_t bytes = 0;   // one pass over the range
  std::uint32_t first = 0; // first frame of the range in the buffer
  std::uint32_t loops = 1;
  std::uint32_t frame = 1;
  std::uint32_t rate = 1;
  std::vector<EventRecord> events;
  Notify notify;
  MessagePump pump;
};

WaveDevice::WaveDevice(Messages& messages, std::unique_ptr<AudioSystem> audio)
    : WaveBuffer(messages), audio_(audio ? std::move(audio) : make_system_audio()),
      recorder_(*audio_, messages) {
  RefreshCapabilities();
}

WaveDevice::~WaveDevice() {
  Stop();
}

void WaveDevice::report(std::string_view text) {
  messages().report(text, "", MessageIcon::Information);
}

void WaveDevice::SetOutputDevice(std::string name) {
  std::lock_guard lock(control_mutex_);
  output_device_ = std::move(name);
}

std::string WaveDevice::output_device() {
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

std::size_t WaveDevice::AddEvent(const EventRecord& event) {
  std::lock_guard lock(events_mutex_);
  return WaveBuffer::AddEvent(event);
}

std::vector<EventRecord> WaveDevice::CopyEvents() {
  std::lock_guard lock(events_mutex_);
  return events();
}

void WaveDevice::RemoveAllEvents() {
  std::lock_guard lock(events_mutex_);
  WaveBuffer::RemoveAllEvents();
}

DeviceResult WaveDevice::Play(std::uint32_t first_sample, std::uint32_t end_sample) {
  // A range that ends before it starts plays nothing, and no event belongs to it.
  if (FrameBytes() && first_sample > std::min(end_sample, data_length() / FrameBytes()))
    return device_result::kOk;
  if (playing_.exchange(true)) {
    // One stream per wave object: a second Play while one runs is refused as busy.
    CheckResult(device_result::kAllocated);
    return device_result::kAllocated;
  }
  const std::string named = output_device();
  auto sink = named.empty() ? audio_->make_sink() : audio_->make_named_sink(named);
  if (!sink) {
    playing_ = false;
    report(device_text::kNoOutputDevice);
    return device_result::kOk;
  }
  if (const DeviceResult opened = sink->open(format()); opened != device_result::kOk) {
    playing_ = false;
    CheckResult(opened);
    sink->close();
    return opened;
  }

  PlayRun run;
  run.frame = FrameBytes();
  run.rate = std::max<std::uint32_t>(format().samples_per_second, 1);
  const std::uint32_t count = run.frame ? data_length() / run.frame : 0;
  const std::uint32_t end = std::min(end_sample, count);
  run.first = std::min(first_sample, end);
  run.block = data() ? data() + std::size_t{run.first} * run.frame : nullptr;
  run.bytes = std::size_t{end - run.first} * run.frame;
  run.loops = loop_count_ >= 2 ? loop_count_.load() : 1;
  {
    std::lock_guard lock(events_mutex_);
    run.events = events();
  }
  {
    std::lock_guard lock(control_mutex_);
    run.notify = notify_;
    run.pump = pump_;
    active_sink_ = sink.get();
    stop_requested_ = false;
  }

  EventRecord start;
  start.kind = static_cast<std::uint32_t>(EventKind::SoundStart);
  start.params[2] = 1;
  if (run.notify) run.notify(start);

  const DeviceResult result = run_play(*sink, run);
  playing_ = false;

  if (run.notify) {
    EventRecord finish = start;
    finish.kind = static_cast<std::uint32_t>(EventKind::SoundEnd);
    finish.position = static_cast<std::uint32_t>(run.bytes);
    run.notify(finish);
  }
  {
    std::lock_guard lock(control_mutex_);
    active_sink_ = nullptr;
  }
  sink->close();
  return result;
}

DeviceResult WaveDevice::run_play(AudioSink& sink, PlayRun& run) {
  // Events before the range belong to sound that is not played.
  std::size_t next = 0;
  while (next < run.events.size() && run.events[next].position < run.first)
    ++next;
  std::size_t offset = 0;
  std::uint32_t loops_written = 0;
  bool finished = false;

  for (;;) {
    if (!finished && !stop_requested_) {
      std::size_t room = sink.writable();
      while (room >= run.frame && loops_written < run.loops && run.bytes > 0) {
        std::size_t n = std::min(room, run.bytes - offset);
        n -= n % run.frame;
        if (n == 0) break;
        if (const DeviceResult r = write_slice(sink, run.block + offset, n); r != 0) {
          CheckResult(r);
          return r;
        }
        room -= n;
        offset += n;
        if (offset == run.bytes) {
          offset = 0;
          ++loops_written;
        }
      }
      if (loops_written == run.loops || run.bytes == 0) {
        if (const DeviceResult r = sink.finish(); r != 0) {
          CheckResult(r);
          return r;
        }
        finished = true;
      }
    }

    std::uint64_t heard = 0;
    if (const DeviceResult r = sink.position(heard); r != 0) {
      CheckResult(r);
      return r;
    }
    // Positions compare as the 32-bit sample numbers the events carry.
    const auto now = static_cast<std::uint32_t>(run.first + heard);
    if (run.notify && next < run.events.size() && now >= run.events[next].position)
      run.notify(run.events[next++]);
    if (run.pump) run.pump();

    if (stop_requested_ || (finished && sink.drained())) return device_result::kOk;

    std::chrono::microseconds timeout = kLongestWait;
    if (run.notify && next < run.events.size()) {
      const std::uint32_t due = run.events[next].position;
      if (now >= due) continue; // the next event is due already: fire it on the next pass
      const std::uint64_t us = std::uint64_t{due - now} * 1'000'000 / run.rate;
      timeout = std::min(timeout, std::chrono::microseconds(static_cast<std::int64_t>(us) + 1));
    }
    sink.wait(timeout);
  }
}

DeviceResult WaveDevice::write_slice(AudioSink& sink, const std::uint8_t* bytes,
                                     std::size_t count) {
  const std::uint32_t volume = volume_;
  if (volume == kFullVolume) return sink.write({bytes, count});
  scratch_.assign(bytes, bytes + count);
  apply_volume(scratch_, bits(), channels(), volume);
  return sink.write(scratch_);
}

DeviceResult WaveDevice::Pause() {
  DeviceResult r = device_result::kInvalidHandle;
  {
    std::lock_guard lock(control_mutex_);
    if (!active_sink_) return r;
    r = active_sink_->pause();
  }
  CheckResult(r);
  return r;
}

DeviceResult WaveDevice::Resume() {
  DeviceResult r = device_result::kInvalidHandle;
  {
    std::lock_guard lock(control_mutex_);
    if (!active_sink_) return r;
    r = active_sink_->resume();
  }
  CheckResult(r);
  return r;
}

DeviceResult WaveDevice::Stop() {
  DeviceResult r = device_result::kInvalidHandle;
  {
    std::lock_guard lock(control_mutex_);
    if (!active_sink_) return r;
    stop_requested_ = true;
    r = active_sink_->reset();
  }
  CheckResult(r);
  return r;
}

bool WaveDevice::PlayPosition(std::uint64_t& frames) {
  std::lock_guard lock(control_mutex_);
  return active_sink_ && active_sink_->position(frames) == device_result::kOk;
}

DeviceResult WaveDevice::SetVolume(std::uint32_t volume) {
  volume_ = volume;
  return device_result::kOk;
}

DeviceResult WaveDevice::SetPitch(std::uint32_t) {
  return device_result::kOk;
}

std::uint32_t WaveDevice::GetPitch() const {
  return 0;
}

std::uint32_t WaveDevice::PitchRangeMaximum() const {
  return output_capabilities().pitch ? 0xFFFFFFFF : 0;
}

void WaveDevice::RefreshCapabilities() {
  const DeviceCapabilities caps = audio_->output_capabilities();
  std::lock_guard lock(caps_mutex_);
  output_caps_ = caps;
}

DeviceCapabilities WaveDevice::output_capabilities() const {
  std::lock_guard lock(caps_mutex_);
  return output_caps_;
}

} // namespace vntts
