// SPDX-License-Identifier: MIT
#include "engine/speech_engine.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "audio/archive/unit_archive.h"
#include "audio/audio_system.h"
#include "audio/wave_device.h"
#include "engine/archive_units.h"
#include "engine/host_code.h"
#include "engine/host_sentences.h"
#include "engine/recording_source.h"
#include "engine/speak_driver.h"
#include "engine/unit_cache.h"
#include "engine/wave_speech_device.h"
#include "engine/word_renderer.h"
#include "store/user_word_stores.h"

namespace vntts {
namespace {

constexpr SettingRange kVolumeRange{0, 65535};
constexpr SettingRange kRateRange{0, 5000};
constexpr std::uint32_t kUnitPitch = 0x10000; // 1.0 in 16.16 fixed point

} // namespace

struct SpeechEngine::Parts {
  Parts(Messages& host_messages, const DataFolder& folder, EngineOverrides overrides)
      : messages(host_messages),
        units(overrides.units
                  ? std::move(overrides.units)
                  : std::make_unique<ArchiveUnits>(folder.FilePath("main_dic.dat"), messages)),
        cache(*units), renderer(cache), device(messages, std::move(overrides.audio)),
        speech_device(device, messages),
        driver({messages,
                renderer,
                speech_device,
                {&stores.definitions, &stores.auto_correct, &renderer},
                &stores.phrases,
                nullptr}) {
    // The word stores are optional: without them words are simply spoken as they stand. One
    // that is there but cannot be read is said once, as a missing voice file is.
    for (const std::string& problem : stores.Load(folder.path()))
      messages.Report(problem, "", MessageIcon::kWarning);
    saved_volume = device.GetVolume();
  }

  // The host's handler, called as host code (a worker in it is never waited for).
  HostCodeMessages messages;
  std::unique_ptr<RecordingSource> units;
  CachedRecordings cache;
  WordRenderer renderer;
  UserWordStores stores;
  WaveDevice device;
  WaveSpeechDevice speech_device;
  SpeakDriver driver; // last: its threads use everything above
  bool muted = false;
  std::uint32_t saved_volume = 0;
};

SpeechEngine::SpeechEngine(Messages& messages, DataFolder data_folder)
    : SpeechEngine(messages, std::move(data_folder), EngineOverrides{}) {}

SpeechEngine::SpeechEngine(Messages& messages, DataFolder data_folder, EngineOverrides overrides)
    : messages_(messages), data_folder_(std::move(data_folder)),
      parts_(std::make_unique<Parts>(messages, data_folder_, std::move(overrides))) {}

SpeechEngine::~SpeechEngine() = default;

// ---- Speak driver ----------------------------------------------------------------------------

void SpeechEngine::Speak(std::string_view text, TextConversion convert) {
  parts_->stores.phrases.ReloadIfChanged(); // a tool may have saved new phrases
  parts_->driver.Speak(text, convert);
}
void SpeechEngine::SpeakFrom(std::string_view text, std::uint32_t text_base) {
  parts_->stores.phrases.ReloadIfChanged();
  parts_->driver.Speak(text, nullptr, text_base);
}
void SpeechEngine::SpeakEx(std::string_view text, VNOutputHandle output, TextConversion convert) {
  parts_->stores.phrases.ReloadIfChanged();
  parts_->driver.SpeakEx(text, output, convert);
}
int SpeechEngine::SpeakToFile(std::string_view text, std::string_view path,
                              TextConversion convert) {
  parts_->stores.phrases.ReloadIfChanged();
  return parts_->driver.SpeakToFile(text, path, convert);
}
int SpeechEngine::Stop() {
  return parts_->driver.Stop();
}
int SpeechEngine::Pause() {
  return parts_->driver.Pause();
}
int SpeechEngine::Resume() {
  return parts_->driver.Resume();
}
int SpeechEngine::PauseResume() {
  return parts_->driver.PauseResume();
}
int SpeechEngine::IsPlaying() {
  return parts_->driver.IsPlaying();
}
bool SpeechEngine::WaitUntilDone(std::chrono::milliseconds timeout) {
  // From a notification the wait would be for the very thread that waits: not done.
  if (parts_->driver.OnOwnWorker()) return false;
  return parts_->driver.WaitUntilIdle(timeout);
}
bool SpeechEngine::IsSpeaking() {
  return parts_->driver.Busy();
}
void SpeechEngine::SetTextBase(std::uint32_t base) {
  parts_->driver.set_text_base(base);
}

HostSynthesisResult SpeechEngine::SynthesizeForHost(std::string_view utf8,
                                                    const HostSynthesisOptions& options,
                                                    const HostChunkSink& sink) {
  HostSentences sentences(parts_->driver);
  return vntts::SynthesizeForHost(utf8, options, sentences, sink);
}

void SpeechEngine::Shutdown() {
  parts_->speech_device.SetClientNotify(nullptr, 0);
  parts_->driver.Shutdown();
}
bool SpeechEngine::Idle() {
  return parts_->driver.Idle();
}
bool SpeechEngine::WaitUntilIdle(std::chrono::steady_clock::time_point deadline) {
  return parts_->driver.WaitUntilWorkersIdle(deadline);
}
bool SpeechEngine::OnOwnWorker() const {
  return parts_->driver.OnOwnWorker();
}

int SpeechEngine::RenderWord(std::string_view word, void* buffer, std::uint32_t* length) {
  std::uint32_t bytes = 0;
  int result = 0;
  if (buffer)
    result = parts_->renderer.RenderInto(
        word, {static_cast<std::uint8_t*>(buffer), VN_WORD_BUFFER_BYTES}, bytes);
  if (length) *length = bytes;
  return result;
}

// ---- Events ----------------------------------------------------------------------------------

VNNotifyProc SpeechEngine::SetNotify(VNNotifyProc notify, std::uintptr_t user) {
  parts_->speech_device.SetClientNotify(notify, user);
  return notify;
}

void SpeechEngine::ForgetOutput(VNOutputHandle output) {
  parts_->speech_device.ForgetOutput(output);
}

std::uint32_t SpeechEngine::AddEvent(const VNEvent& event) {
  return static_cast<std::uint32_t>(parts_->device.AddEvent(FromPublicEvent(event)));
}

void SpeechEngine::RemoveAllEvents() {
  parts_->device.RemoveAllEvents();
}

// ---- Settings --------------------------------------------------------------------------------

std::uint32_t SpeechEngine::GetVolume() {
  return parts_->device.GetVolume();
}

std::uint32_t SpeechEngine::GetDefaultVolume() const {
  return (kVolumeRange.maximum - kVolumeRange.minimum) / 5;
}

int SpeechEngine::SetVolume(std::uint32_t volume) {
  return parts_->device.CheckResult(parts_->device.SetVolume(volume)) ? 1 : 0;
}

int SpeechEngine::MuteVolume() {
  Parts& p = *parts_;
  if (!p.muted) {
    p.saved_volume = p.device.GetVolume();
    SetVolume(0);
    p.muted = true;
  } else {
    SetVolume(p.saved_volume);
    p.muted = false;
  }
  return 1;
}

SettingRange SpeechEngine::GetVolumeRange() const {
  return kVolumeRange;
}

std::uint32_t SpeechEngine::GetPitch() {
  return parts_->device.PitchRangeMaximum() ? parts_->device.GetPitch() : 0;
}

std::uint32_t SpeechEngine::GetDefaultPitch() const {
  return kUnitPitch;
}

int SpeechEngine::SetPitch(std::uint32_t pitch) {
  if (!parts_->device.PitchRangeMaximum()) return 0; // no pitch support: nothing to do
  return parts_->device.CheckResult(parts_->device.SetPitch(pitch)) ? 1 : 0;
}

SettingRange SpeechEngine::GetPitchRange() {
  return {0, parts_->device.PitchRangeMaximum()};
}

std::uint32_t SpeechEngine::SetSpeed(std::uint32_t percent) {
  percent = std::clamp(percent, kMinSpeedPercent, kMaxSpeedPercent);
  parts_->driver.set_speed(percent / 100.0);
  return percent;
}

std::uint32_t SpeechEngine::GetSpeed() const {
  return static_cast<std::uint32_t>(std::lround(parts_->driver.speed() * 100));
}

std::uint32_t SpeechEngine::GetRateSpeech() const {
  return kRateRange.minimum + kRateRange.maximum - parts_->driver.slowness();
}

std::uint32_t SpeechEngine::GetDefaultRateSpeech() const {
  return kRateRange.maximum;
}

std::uint32_t SpeechEngine::SetRateSpeech(std::uint32_t rate) {
  // No clamping: a rate above the range wraps the unsigned slowness and reads back unchanged.
  parts_->driver.set_slowness(kRateRange.minimum + kRateRange.maximum - rate);
  return kRateRange.maximum;
}

SettingRange SpeechEngine::GetRateSpeechRange() const {
  return kRateRange;
}

int SpeechEngine::SetAudioFormat(std::uint32_t code) {
  if (code < 8 || code > 35) return 0;
  return parts_->device.SetFormatCode(code);
}

void SpeechEngine::ResetAllToDefault() {
  parts_->driver.set_slowness(0);
  // Not the constructor's stereo 22050 Hz 16-bit: the reset format is the small one, on purpose.
  parts_->device.SetFormat(WaveFormat::Pcm(1, 11025, 8));
}

// ---- The engine's wave -----------------------------------------------------------------------

int SpeechEngine::PlayWave(std::uint32_t first, std::uint32_t end) {
  return static_cast<int>(parts_->device.Play(first, end));
}
void SpeechEngine::PausePlayWave() {
  parts_->device.Pause();
}
void SpeechEngine::ResumePlayWave() {
  parts_->device.Resume();
}
void SpeechEngine::StopPlayWave() {
  parts_->device.Stop();
}

int SpeechEngine::LoadFileWave(std::string_view path) {
  if (path.empty()) return 0;
  return parts_->device.Load(std::string(path)) == 0 ? 1 : 0;
}

int SpeechEngine::SaveFileWave(std::string_view path) {
  return parts_->device.Save(std::string(path), 0, WaveBuffer::kToEnd) == 0 ? 1 : 0;
}

std::uint32_t SpeechEngine::GetCountSample() {
  return parts_->device.SampleCount();
}

void* SpeechEngine::GetDataBuf() {
  return parts_->device.data();
}

WaveDevice& SpeechEngine::wave_device() {
  return parts_->device;
}

UserWordStores& SpeechEngine::word_stores() {
  return parts_->stores;
}

WaveInfo SpeechEngine::GetWaveInfo() {
  return {parts_->device.Channels(), parts_->device.SampleRate(), parts_->device.Bits()};
}

int SpeechEngine::RecordToFile(std::string_view path, std::uint32_t milliseconds) {
  if (path.empty()) return 0;
  return parts_->device.RecordToFile(std::string(path), milliseconds) == 0 ? 1 : 0;
}

} // namespace vntts
