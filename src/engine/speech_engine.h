// SPDX-License-Identifier: MIT
#pragma once
// The one engine object behind the exported functions: settings, the speak driver with its
// worker threads, the events and the engine's wave (the sample block the wave calls play, load
// and save). The exports in src/api only make sure an engine exists, convert text and forward
// here; every behaviour lives behind these methods.
//
// Texts handed to the engine are in the internal 8-bit encoding. The windows (SpeakDlg, Record,
// Tools, EditDefinition) are reached from src/api through the window module, not from here.
#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>

#include "audio/audio_system.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/recording_source.h"
#include "synthesis/host_synthesis.h"
#include "vntts/vntts.h"

namespace vntts {

class UserWordStores;

class WaveDevice;

// The three format fields the GetWaveInfo export copies out.
struct WaveInfo {
  std::uint16_t channels = 0;
  std::uint32_t samples_per_second = 0;
  std::uint16_t bits_per_sample = 0;
};

// The speed setting: half to four times the recorded pace.
inline constexpr std::uint32_t kMinSpeedPercent = 50;
inline constexpr std::uint32_t kMaxSpeedPercent = 400;

// A range written by the Get...Range exports.
struct SettingRange {
  std::uint32_t minimum = 0;
  std::uint32_t maximum = 0;
};

// What a test or a tool may put in place of the engine's own parts; null means the real one.
struct EngineOverrides {
  std::unique_ptr<AudioSystem> audio;     // sound output (default: chosen by VNTTS_AUDIO)
  std::unique_ptr<RecordingSource> units; // recordings (default: the folder's syllable archive)
};

class SpeechEngine {
public:
  // messages must outlive the engine; user-visible failures go there. data_folder holds the
  // archive, the auto-correct table and the phrase store.
  SpeechEngine(Messages& messages, DataFolder data_folder);
  SpeechEngine(Messages& messages, DataFolder data_folder, EngineOverrides overrides);
  ~SpeechEngine();
  SpeechEngine(const SpeechEngine&) = delete;
  SpeechEngine& operator=(const SpeechEngine&) = delete;

  Messages& messages() { return messages_; }
  const DataFolder& data_folder() const { return data_folder_; }

  // ---- Speak driver ----
  // Texts in another form come with their conversion to internal text, which runs on the
  // speech's own thread.
  using TextConversion = std::string (*)(std::string_view);
  void Speak(std::string_view text, TextConversion convert = nullptr);
  // As Speak, with text_base added to the text offsets of the speech's events: the Speaker
  // window speaks a selection and highlights in its whole text.
  void SpeakFrom(std::string_view text, std::uint32_t text_base);
  void SpeakEx(std::string_view text, VNOutputHandle output, TextConversion convert = nullptr);
  int SpeakToFile(std::string_view text, std::string_view path, TextConversion convert = nullptr);
  int Stop();
  int Pause();
  int Resume();
  int PauseResume();
  int IsPlaying();
  // GetBufOfWord: renders word into buffer (VN_WORD_BUFFER_BYTES bytes), byte count into *length.
  int RenderWord(std::string_view word, void* buffer, std::uint32_t* length);
  // Waits until the current speech has been played or written, or was stopped (for programs
  // that speak and then exit). False when the time ran out first.
  bool WaitUntilDone(std::chrono::milliseconds timeout = std::chrono::hours(24));
  // True while a speech's worker threads run.
  bool IsSpeaking();
  // Added to the text offsets of the events from now on (a window that speaks a part of its
  // text gives the part's start); every speak call resets it to 0.
  void SetTextBase(std::uint32_t base);

  // ---- Synthesis to the host ----
  // Speaks UTF-8 text (speech markup or plain) into `sink` on the calling thread, through the
  // speak driver (a running speech is stopped first), with the speed and pitch in force.
  HostSynthesisResult SynthesizeForHost(std::string_view utf8, const HostSynthesisOptions& options,
                                        const HostChunkSink& sink);

  // ---- The engine's end ----
  // Ends speech, clears the notification target and refuses new speech: after this no
  // notification call begins. Waits for the workers except those that are in host code.
  void Shutdown();
  // No worker thread is inside a speech: the engine may be destroyed without waiting.
  bool Idle();
  // Waits (at most until `deadline`) until Idle().
  bool WaitUntilIdle(std::chrono::steady_clock::time_point deadline);
  // The calling thread is one of this engine's workers (its notification or message calls).
  bool OnOwnWorker() const;

  // ---- Events and notification ----
  // Returns the function, as SetNotifyFunc does. No call of the old function begins after this
  // returns.
  VNNotifyProc SetNotify(VNNotifyProc notify, std::uintptr_t user);
  // The host closed an output handle; the device lets go of it if it is the one it holds.
  void ForgetOutput(VNOutputHandle output);
  std::uint32_t AddEvent(const VNEvent& event);
  void RemoveAllEvents();

  // ---- Settings ----
  std::uint32_t GetVolume();
  std::uint32_t GetDefaultVolume() const;
  int MuteVolume();
  int SetVolume(std::uint32_t volume);
  SettingRange GetVolumeRange() const;
  std::uint32_t GetPitch();
  std::uint32_t GetDefaultPitch() const;
  int SetPitch(std::uint32_t pitch);
  SettingRange GetPitchRange();
  // The lasting speed, in percent of the recorded pace (kMinSpeedPercent..kMaxSpeedPercent);
  // SetSpeed returns the value now in force.
  std::uint32_t SetSpeed(std::uint32_t percent);
  std::uint32_t GetSpeed() const;
  std::uint32_t GetRateSpeech() const;
  std::uint32_t GetDefaultRateSpeech() const;
  std::uint32_t SetRateSpeech(std::uint32_t rate);
  SettingRange GetRateSpeechRange() const;
  int SetAudioFormat(std::uint32_t code);
  void ResetAllToDefault();

  // ---- The engine's wave (device buffer) ----
  int PlayWave(std::uint32_t first, std::uint32_t end);
  void PausePlayWave();
  void ResumePlayWave();
  void StopPlayWave();
  int LoadFileWave(std::string_view path);
  int SaveFileWave(std::string_view path);
  std::uint32_t GetCountSample();
  void* GetDataBuf();
  WaveInfo GetWaveInfo();

  // The wave device itself, for the dialogs: the record window's recorder and the message pump.
  WaveDevice& wave_device();
  // The user word stores, for the tools that edit them.
  UserWordStores& word_stores();

  // ---- Recording and dialogs ----
  // Records from the default input for the given time into a WAV file in the buffer's format,
  // without a window. 1 on success, 0 on failure (the recorder has shown why).
  int RecordToFile(std::string_view path, std::uint32_t milliseconds);

private:
  struct Parts;
  Messages& messages_;
  DataFolder data_folder_;
  std::unique_ptr<Parts> parts_;
};

} // namespace vntts
