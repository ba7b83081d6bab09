#pragma once
// The engine's wave object: the wave buffer plus what plays and records it. Play runs on
// the caller's thread and returns when the sound has been heard or stopped, firing the
// buffer's events as their sample positions are reached; Pause, Resume and Stop come from
// other threads meanwhile. It also holds the output format, the volume word, the notify
// target and the recorder.
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "audio/audio_system.h"
#include "audio/recorder.h"
#include "audio/wave_buffer.h"

namespace vntts {

class WaveDevice : public WaveBuffer {
public:
  // Called on the playing thread with a copy of each event as it fires.
  using Notify = std::function<void(const EventRecord&)>;
  // Called on the playing thread between waits, so that a UI keeps handling its events.
  using MessagePump = std::function<void()>;

  explicit WaveDevice(Messages& messages, std::unique_ptr<AudioSystem> audio = nullptr);
  ~WaveDevice() override;

  // Plays frames [first_sample, end_sample) of the buffer (the whole buffer by default),
  // loop-count times. 0 when played, stopped, or when there is no output device (after
  // saying so); otherwise the device result that ended it, after its message.
  DeviceResult Play(std::uint32_t first_sample = 0, std::uint32_t end_sample = kToEnd);
  // Act on the stream of a running Play; without one they return kInvalidHandle quietly.
  DeviceResult Pause();
  DeviceResult Resume();
  // Ends a running Play early; Play still sends its end event.
  DeviceResult Stop();
  bool IsPlaying() const { return playing_.load(); }
  // Frames of the running Play heard so far (by the sound system's clock), counted from the
  // first frame played; false when nothing plays.
  bool PlayPosition(std::uint64_t& frames);

  // Plays through this named output (PulseAudio sink or ALSA PCM) instead of the default,
  // as the extension outputs of the Ex speak calls ask; empty means the default again.
  void SetOutputDevice(std::string name);
  std::string output_device();

  // Below 2 plays once.
  void SetLoopCount(std::uint32_t count) { loop_count_ = count; }
  std::uint32_t loop_count() const { return loop_count_; }
  void SetNotify(Notify notify);
  void SetMessagePump(MessagePump pump);

  std::size_t AddEvent(const EventRecord& event) override;
  void RemoveAllEvents() override;
  // A copy of the event list, safe while another thread adds events.
  std::vector<EventRecord> CopyEvents();

  // The volume word: left level in the low 16 bits, right in the high; applied as gain to
  // what is played next. Starts at full level. SetVolume returns 0.
  DeviceResult SetVolume(std::uint32_t volume);
  std::uint32_t GetVolume() const { return volume_.load(); }
  // No device changes pitch: the range is 0..0, GetPitch gives 0 and SetPitch does nothing
  // and returns 0 (while capabilities report no pitch support).
  DeviceResult SetPitch(std::uint32_t pitch);
  std::uint32_t GetPitch() const;
  std::uint32_t PitchRangeMaximum() const;
  // Rereads the output capabilities that SetFormatCode and the pitch calls consult.
  void RefreshCapabilities();
  DeviceCapabilities output_capabilities() const;

  // False for 0; true for a known device error and false for an unknown one, each after
  // its message ("Error !!!" for the unknown).
  bool CheckResult(DeviceResult code);
  // 1 when the input can record the buffer's format, else 0 after saying why.
  int CanRecord();
  // Sets channels, rate and bits from a format code when the output supports it; 1 when
  // the format changed.
  int SetFormatCode(std::uint32_t code);

  // The recorder, in the buffer's format. Each returns 0 on success.
  DeviceResult StartRecording();
  DeviceResult PauseRecording();
  DeviceResult ResumeRecording();
  DeviceResult StopRecording();
  DeviceResult SaveRecording(const std::string& path);
  void CloseRecording();
  // Records the given milliseconds into a WAV file without any window: 0 on success.
  DeviceResult RecordToFile(const std::string& path, std::uint32_t milliseconds);

private:
  struct PlayRun;
  DeviceResult run_play(AudioSink& sink, PlayRun& run);
  DeviceResult write_slice(AudioSink& sink, const std::uint8_t* bytes, std::size_t count);
  void report(std::string_view text);

  std::unique_ptr<AudioSystem> audio_;
  Recorder recorder_;
  std::string output_device_; // guarded by control_mutex_

  std::mutex control_mutex_; // guards active_sink_ and the notify/pump hooks
  AudioSink* active_sink_ = nullptr;
  Notify notify_;
  MessagePump pump_;
  std::atomic<bool> playing_{false};
  std::atomic<bool> stop_requested_{false};

  std::mutex events_mutex_;
  std::atomic<std::uint32_t> loop_count_{0};
  std::atomic<std::uint32_t> volume_{0xFFFFFFFF};
  mutable std::mutex caps_mutex_;
  DeviceCapabilities output_caps_;
  std::vector<std::uint8_t> scratch_;
};

} // namespace vntts
