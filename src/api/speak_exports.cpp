// SPDX-License-Identifier: MIT
// The speak family and the speech controls.
#include "api/export_guard.h"
#include "api/text_input.h"
#include "api/windows.h"

using vntts::SpeechEngine;
using namespace vntts::api;

namespace {

using Conversion = SpeechEngine::TextConversion;

// Every speak export sets the notification target first, as SetNotifyFunc does. The text goes
// to the engine as it came, with its conversion: that runs on the speech's thread, so a speak
// call returns at once however long the text.
void SpeakInternal(SpeechEngine& engine, std::string_view text, Conversion convert,
                   VNNotifyProc notify, std::uintptr_t user) {
  engine.SetNotify(notify, user);
  engine.Speak(text, convert);
}

void SpeakInternalEx(SpeechEngine& engine, std::string_view text, Conversion convert,
                     VNOutputHandle output, VNNotifyProc notify, std::uintptr_t user) {
  engine.SetNotify(notify, user);
  engine.SpeakEx(text, output, convert);
}

} // namespace

extern "C" {

void SpeakVN(const char* text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid(
      [&](SpeechEngine& e) { SpeakInternal(e, TextArgument(text), nullptr, notify, user); });
}

void SpeakVNEx(const char* text, VNOutputHandle output, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternalEx(e, TextArgument(text), nullptr, output, notify, user);
  });
}

void SpeakVNUTF8(const char* utf8_text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternal(e, TextArgument(utf8_text), &InternalFromUtf8, notify, user);
  });
}

void SpeakVNUTF8Ex(const char* utf8_text, VNOutputHandle output, VNNotifyProc notify,
                   uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternalEx(e, TextArgument(utf8_text), &InternalFromUtf8, output, notify, user);
  });
}

void SpeakVNASCII(const char* text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternal(e, TextArgument(text), &InternalFromWindows95VN, notify, user);
  });
}

void SpeakVNASCIIEx(const char* text, VNOutputHandle output, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternalEx(e, TextArgument(text), &InternalFromWindows95VN, output, notify, user);
  });
}

int SaveVNToWaveFile(const char* utf8_text, const char* path) {
  return WithEngine(0, [&](SpeechEngine& e) {
    return e.SpeakToFile(TextArgument(utf8_text), TextArgument(path), &InternalFromUtf8);
  });
}

int SpeakDlg(uintptr_t value, const char* text) {
  return WithEngine(
      0, [&](SpeechEngine& e) { return ShowSpeakerWindow(e, value, TextArgument(text)); });
}

int PauseSpeak(void) {
  return WithExistingEngine(0, [](SpeechEngine& e) { return e.Pause(); });
}

int ResumeSpeak(void) {
  return WithExistingEngine(0, [](SpeechEngine& e) { return e.Resume(); });
}

int PauseResumeSpeak(void) {
  return WithExistingEngine(0, [](SpeechEngine& e) { return e.PauseResume(); });
}

int StopSpeak(void) {
  return WithExistingEngine(0, [](SpeechEngine& e) { return e.Stop(); });
}

int IsPlaying(void) {
  return WithExistingEngine(0, [](SpeechEngine& e) { return e.IsPlaying(); });
}

int GetBufOfWord(const char* word, void* buffer, uint32_t* length) {
  return WithEngine(
      0, [&](SpeechEngine& e) { return e.RenderWord(TextArgument(word), buffer, length); });
}

} // extern "C"
