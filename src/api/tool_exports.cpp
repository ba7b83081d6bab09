// SPDX-License-Identifier: MIT
// Recording and the modal tools.
#include "api/export_guard.h"
#include "api/windows.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

int Record(uintptr_t value) {
  return WithEngine(0, [&](SpeechEngine& e) { return RunRecordWindow(e, value); });
}

int RecordToFile(const char* path, uint32_t milliseconds) {
  return WithEngine(0, [&](SpeechEngine& e) {
    // Without a time the Record window decides when to stop, with path as its file name.
    if (milliseconds == 0) return RecordToFileWithWindow(e, TextArgument(path));
    return e.RecordToFile(TextArgument(path), milliseconds);
  });
}

void EditDefinition(uintptr_t value) {
  WithEngineVoid([&](SpeechEngine& e) { LibraryWindows().EditDefinition(e, value); });
}

int Tools(uintptr_t value) {
  return WithEngine(0, [&](SpeechEngine& e) { return LibraryWindows().Tools(e, value); });
}

} // extern "C"
