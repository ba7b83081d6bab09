// SPDX-License-Identifier: MIT
// Volume, pitch, rate and output format.
#include "api/export_guard.h"

using vntts::SettingRange;
using vntts::SpeechEngine;
using namespace vntts::api;

namespace {

// The Get...Range exports write both ends and return the pointer to the minimum. Null output
// pointers are skipped rather than written through.
uint32_t* WriteRange(SettingRange range, uint32_t* minimum, uint32_t* maximum) {
  if (minimum) *minimum = range.minimum;
  if (maximum) *maximum = range.maximum;
  return minimum;
}

} // namespace

extern "C" {

uint32_t GetVolume(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetVolume(); });
}

uint32_t GetDefaultVolume(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetDefaultVolume(); });
}

int MuteVolume(void) {
  return WithEngine(0, [](SpeechEngine& e) { return e.MuteVolume(); });
}

int SetVolume(uint32_t volume) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.SetVolume(volume); });
}

uint32_t* GetVolumeRange(uint32_t* minimum, uint32_t* maximum) {
  return WithEngine<uint32_t*>(
      nullptr, [&](SpeechEngine& e) { return WriteRange(e.GetVolumeRange(), minimum, maximum); });
}

uint32_t GetPitch(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetPitch(); });
}

uint32_t GetDefaultPitch(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetDefaultPitch(); });
}

int SetPitch(uint32_t pitch) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.SetPitch(pitch); });
}

uint32_t* GetPitchRange(uint32_t* minimum, uint32_t* maximum) {
  return WithEngine<uint32_t*>(
      nullptr, [&](SpeechEngine& e) { return WriteRange(e.GetPitchRange(), minimum, maximum); });
}

uint32_t GetRateSpeech(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetRateSpeech(); });
}

uint32_t GetDefaultRateSpeech(void) {
  return WithEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetDefaultRateSpeech(); });
}

uint32_t SetRateSpeech(uint32_t rate) {
  return WithEngine<uint32_t>(0, [&](SpeechEngine& e) { return e.SetRateSpeech(rate); });
}

uint32_t* GetRateSpeechRange(uint32_t* minimum, uint32_t* maximum) {
  return WithEngine<uint32_t*>(nullptr, [&](SpeechEngine& e) {
    return WriteRange(e.GetRateSpeechRange(), minimum, maximum);
  });
}

int SetVNAudioFormat(uint32_t code) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.SetAudioFormat(code); });
}

void ResetAllToDefault(void) {
  WithEngineVoid([](SpeechEngine& e) { e.ResetAllToDefault(); });
}

} // extern "C"
