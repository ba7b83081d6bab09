// SPDX-License-Identifier: MIT
#pragma once
// The engine's wave object: the wave buffer plus what plays and records it. A play runs on
// the caller's thread and returns when the sound has been heard or stopped, firing events as
// their sample positions are reached; Pause, Resume and Stop come from other threads
// meanwhile and take effect whenever they report success, also in the moments before the
// sound system has opened its stream. It also holds the output format, the volume word, the
// notify target and the recorder.
//
// Every public method may be called from any thread. The buffer (format, samples, events) has
// its own lock; a play never reads the buffer's block in place, so loading or replacing the
// wave while something plays is safe.
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

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

  // One play's sound: `bytes` bytes of `block` from `offset`, in `format`. Event positions
  // count frames from the block's frame `first_frame`. `own_events` (sorted) fire with the
  // buffer's event list, ahead of its events at the same position; `use_list` false leaves
  // the list out.
  struct Sound {
    WaveFormat format;
    std::shared_ptr<const std::vector<std::uint8_t>> block;
    std::size_t offset = 0;
    std::size_t bytes = 0;
    std::uint32_t first_frame = 0;
    std::vector<EventRecord> own_events;
    bool use_list = true;
  };
  // How a play meets a device that is busy and a caller that gives up. With wait_while_busy
  // the play waits for the running one to end instead of being refused; once `cancel` is set
  // it gives up waiting, or ends as Stop would.
  struct Control {
    const std::atomic<bool>* cancel = nullptr;
    bool wait_while_busy = false;
  };

  explicit WaveDevice(Messages& messages, std::unique_ptr<AudioSystem> audio = nullptr);
  ~WaveDevice() override;

  // Plays frames [first_sample, end_sample) of the buffer (the whole buffer by default),
  // loop-count times. 0 when played, stopped, or when there is no output device (after
  // saying so); otherwise the device result that ended it, after its message. A second play
  // while one runs is refused as busy.
  DeviceResult Play(std::uint32_t first_sample = 0, std::uint32_t end_sample = kToEnd);
  // Plays a sound that is not the buffer's (a sentence of speech).
  DeviceResult PlaySound(Sound sound, Control control);
  // Act on a running play; without one they return kInvalidHandle quietly.
  DeviceResult Pause();
  DeviceResult Resume();
  // Ends a running play early; the play still sends its end event once its stream was open.
  DeviceResult Stop();
  // Wakes plays waiting for the device so that they look at their cancel flag again.
  void WakeWaiting();
  bool IsPlaying() const { return playing_.load(); }
  // Frames of the running play heard so far (by the sound system's clock), counted from the
  // first frame played; false when nothing plays.
  bool PlayPosition(std::uint64_t& frames);

  // Plays through this named output (PulseAudio sink or ALSA PCM) instead of the default,
  // as the extension outputs of the Ex speak calls ask; empty means the default again.
  void SetOutputDevice(std::string name);
  std::string OutputDevice();

  // Below 2 plays once.
  void SetLoopCount(std::uint32_t count) { loop_count_ = count; }
  void SetNotify(Notify notify);
  void SetMessagePump(MessagePump pump);

  // ---- The buffer, under its lock ----
  int Load(const std::string& path);
  int Save(const std::string& path, std::uint32_t first_sample = 0,
           std::uint32_t end_sample = kToEnd);
  std::uint32_t SampleCount();
  std::uint8_t* data();
  void AssignSamples(std::span<const std::uint8_t> bytes);
  void Release();
  WaveFormat Format();
  void SetFormat(const WaveFormat& format);
  std::uint16_t Channels() { return Format().channels; }
  std::uint32_t SampleRate() { return Format().samples_per_second; }
  std::uint16_t Bits() { return Format().bits_per_sample; }
  std::size_t AddEvent(const EventRecord& event) override;
  void RemoveAllEvents() override;
  std::vector<EventRecord> CopyEvents();

  // The volume word: left level in the low 16 bits, right in the high; applied as gain to
  // what is played next. Starts at full level. SetVolume returns 0.
  DeviceResult SetVolume(std::uint32_t volume);
  std::uint32_t GetVolume() const { return volume_.load(); }
  // The pitch in 16.16 fixed point (0x10000 the unit pitch, where it starts), kept for the
  // speech that is converted to the output format next (dsp/speech_scaler.h shifts it, by
  // at most an octave either way). With capabilities that report no pitch support the range
  // is 0..0, GetPitch gives 0 and SetPitch does nothing. SetPitch returns 0.
  DeviceResult SetPitch(std::uint32_t pitch);
  std::uint32_t GetPitch() const;
  std::uint32_t PitchRangeMaximum() const;
  // Rereads the output capabilities that SetFormatCode and the pitch calls consult.
  void RefreshCapabilities();
  DeviceCapabilities OutputCapabilities() const;

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
  bool Register(const Control& control, DeviceResult& refused);
  void Unregister();
  bool Cancelled(const Control& control) const;
  DeviceResult RunPlay(AudioSink& sink, PlayRun& run);
  bool FeedSink(AudioSink& sink, PlayRun& run, DeviceResult& error);
  void FireDueEvent(PlayRun& run, std::uint32_t now);
  void RefreshListCopy(PlayRun& run, std::uint32_t now);
  DeviceResult WriteSlice(AudioSink& sink, const PlayRun& run, const std::uint8_t* bytes,
                          std::size_t count);
  void Report(std::string_view text);

  std::unique_ptr<AudioSystem> audio_;
  Recorder recorder_;

  // The buffer: format, samples, the event list and a serial number per event (so a play
  // can tell which events of a changed list it has fired).
  std::mutex buffer_mutex_;
  std::vector<std::uint64_t> event_serials_;
  std::uint64_t next_serial_ = 1;
  std::atomic<std::uint64_t> events_version_{0};

  // The running play: registered and opening its stream, playing (active_sink_ set), or
  // ending (end event, closing). paused_ and stop_requested_ are the controls' wishes; a play
  // that is still opening applies them as soon as its stream is open.
  enum class Phase { kIdle, kOpening, kOpen, kEnding };
  std::mutex control_mutex_;
  std::condition_variable control_changed_;
  std::string output_device_;
  AudioSink* active_sink_ = nullptr;
  Phase phase_ = Phase::kIdle;
  bool paused_ = false;
  bool stop_requested_ = false;
  Notify notify_;
  MessagePump pump_;
  std::atomic<bool> playing_{false};

  std::atomic<std::uint32_t> loop_count_{0};
  std::atomic<std::uint32_t> volume_{0xFFFFFFFF};
  std::atomic<std::uint32_t> pitch_{0x10000};
  mutable std::mutex caps_mutex_;
  DeviceCapabilities output_caps_;
  std::vector<std::uint8_t> scratch_; // only the playing thread uses it
};

// Whether the system's sound (as VNTTS_AUDIO chooses it) can open a stream on the named output:
// 0, or the device result that refused it (kNoDriver without any sound system). Opens one
// stream briefly; for the ...Ex calls' output handles.
DeviceResult ProbeOutput(const std::string& name);
// The message CheckResult shows for a device result ("Error !!!" for one it does not know).
std::string_view DeviceResultText(DeviceResult code);

} // namespace vntts
