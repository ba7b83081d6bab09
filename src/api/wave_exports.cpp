// SPDX-License-Identifier: MIT
// The engine's wave: play, load, save and inspect.
#include "api/export_guard.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

int PlayWave(uint32_t first, uint32_t end) {
  return WithExistingEngine(0, [&](SpeechEngine& e) { return e.PlayWave(first, end); });
}

void PausePlayWave(void) {
  WithExistingEngineVoid([](SpeechEngine& e) { e.PausePlayWave(); });
}

void ResumePlayWave(void) {
  WithExistingEngineVoid([](SpeechEngine& e) { e.ResumePlayWave(); });
}

void StopPlayWave(void) {
  WithExistingEngineVoid([](SpeechEngine& e) { e.StopPlayWave(); });
}

int LoadFileWave(const char* path) {
  // Checked before the engine is touched: an empty path neither loads nor creates anything.
  if (!path || !*path) return 0;
  return WithEngine(0, [&](SpeechEngine& e) { return e.LoadFileWave(path); });
}

int SaveFileWave(const char* path) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.SaveFileWave(TextArgument(path)); });
}

uint32_t GetCountSample(void) {
  return WithExistingEngine<uint32_t>(0, [](SpeechEngine& e) { return e.GetCountSample(); });
}

void* GetDataBuf(void) {
  return WithExistingEngine<void*>(nullptr, [](SpeechEngine& e) { return e.GetDataBuf(); });
}

int GetWaveInfo(uint16_t* channels, uint32_t* samples_per_second, uint16_t* bits_per_sample) {
  return WithExistingEngine(0, [&](SpeechEngine& e) {
    const vntts::WaveInfo info = e.GetWaveInfo();
    if (channels) *channels = info.channels;
    if (samples_per_second) *samples_per_second = info.samples_per_second;
    if (bits_per_sample) *bits_per_sample = info.bits_per_sample;
    return 1;
  });
}

} // extern "C"
