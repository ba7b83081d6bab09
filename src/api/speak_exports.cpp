// The speak family and the speech controls.
#include "api/export_guard.h"
#include "api/text_input.h"
#include "api/windows.h"

using vntts::SpeechEngine;
using namespace vntts::api;

namespace {

// Every speak export sets the notification target first, as SetNotifyFunc does.
void SpeakInternal(SpeechEngine& engine, std::string_view text, VNNotifyProc notify,
                   std::uintptr_t user) {
  engine.SetNotify(notify, user);
  engine.Speak(text);
}

void SpeakInternalEx(SpeechEngine& engine, std::string_view text, VNOutputHandle output,
                     VNNotifyProc notify, std::uintptr_t user) {
  engine.SetNotify(notify, user);
  engine.SpeakEx(text, output);
}

} // namespace

extern "C" {

void SpeakVN(const char* text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) { SpeakInternal(e, TextArgument(text), notify, user); });
}

void SpeakVNEx(const char* text, VNOutputHandle output, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid(
      [&](SpeechEngine& e) { SpeakInternalEx(e, TextArgument(text), output, notify, user); });
}

void SpeakVNUTF8(const char* utf8_text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternal(e, InternalFromUtf8(TextArgument(utf8_text)), notify, user);
  });
}

void SpeakVNUTF8Ex(const char* utf8_text, VNOutputHandle output, VNNotifyProc notify,
                   uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternalEx(e, InternalFromUtf8(TextArgument(utf8_text)), output, notify, user);
  });
}

void SpeakVNASCII(const char* text, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternal(e, InternalFromWindows95VN(TextArgument(text)), notify, user);
  });
}

void SpeakVNASCIIEx(const char* text, VNOutputHandle output, VNNotifyProc notify, uintptr_t user) {
  WithEngineVoid([&](SpeechEngine& e) {
    SpeakInternalEx(e, InternalFromWindows95VN(TextArgument(text)), output, notify, user);
  });
}

int SaveVNToWaveFile(const char* utf8_text, const char* path) {
  return WithEngine(0, [&](SpeechEngine& e) {
    return e.SpeakToFile(InternalFromUtf8(TextArgument(utf8_text)), TextArgument(path));
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
