// Operations of the engine that are not built yet. Each returns the value its export gives on
// failure (0, null, nothing) and has no effect, so that a host sees "did not happen" rather than
// an invented result. An operation leaves this file when its real implementation lands.
#include "engine/speech_engine.h"

namespace vntts {

// Speak driver.
void SpeechEngine::Speak(std::string_view) {}
void SpeechEngine::SpeakEx(std::string_view, VNOutputHandle) {}
int SpeechEngine::SpeakToFile(std::string_view, std::string_view) {
  return 0;
}
int SpeechEngine::Stop() {
  return 1;
} // nothing can be speaking yet, so stopping succeeds
int SpeechEngine::Pause() {
  return 0;
}
int SpeechEngine::Resume() {
  return 0;
}
int SpeechEngine::PauseResume() {
  return 0;
}
int SpeechEngine::IsPlaying() {
  return 0;
}
int SpeechEngine::RenderWord(std::string_view, void*, std::uint32_t* length) {
  if (length) *length = 0;
  return 0;
}

// Events and notification.
VNNotifyProc SpeechEngine::SetNotify(VNNotifyProc, std::uintptr_t) {
  return nullptr;
}
std::uint32_t SpeechEngine::AddEvent(const VNEvent&) {
  return 0;
}
void SpeechEngine::RemoveAllEvents() {}

// Device settings: volume, pitch, output format.
std::uint32_t SpeechEngine::GetVolume() {
  return 0;
}
int SpeechEngine::MuteVolume() {
  return 0;
}
int SpeechEngine::SetVolume(std::uint32_t) {
  return 1;
}
std::uint32_t SpeechEngine::GetPitch() {
  return 0;
}
int SpeechEngine::SetPitch(std::uint32_t) {
  return 0;
} // no pitch support: does nothing, 0
SettingRange SpeechEngine::GetPitchRange() {
  return {0, 0};
}
int SpeechEngine::SetAudioFormat(std::uint32_t) {
  return 0;
}
void SpeechEngine::ResetAllToDefault() {}

// The engine's wave.
int SpeechEngine::PlayWave(std::uint32_t, std::uint32_t) {
  return 0;
}
void SpeechEngine::PausePlayWave() {}
void SpeechEngine::ResumePlayWave() {}
void SpeechEngine::StopPlayWave() {}
int SpeechEngine::LoadFileWave(std::string_view) {
  return 0;
}
int SpeechEngine::SaveFileWave(std::string_view) {
  return 0;
}
std::uint32_t SpeechEngine::GetCountSample() {
  return 0;
}
void* SpeechEngine::GetDataBuf() {
  return nullptr;
}
WaveInfo SpeechEngine::GetWaveInfo() {
  return {};
}

// Recording and dialogs.
int SpeechEngine::Record(std::uintptr_t) {
  return 0;
}
int SpeechEngine::RecordToFile(std::uintptr_t, std::string_view) {
  return 0;
}
int SpeechEngine::SpeakDlg(std::uintptr_t, std::string_view) {
  return 0;
}
void SpeechEngine::EditDefinition(std::uintptr_t) {}
int SpeechEngine::Tools(std::uintptr_t) {
  return 0;
}

} // namespace vntts
