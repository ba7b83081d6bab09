// Recording and the modal tools.
#include "api/export_guard.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

int Record(uintptr_t value) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.Record(value); });
}

int RecordToFile(const char* path, uint32_t milliseconds) {
  return WithEngine(
      0, [&](SpeechEngine& e) { return e.RecordToFile(TextArgument(path), milliseconds); });
}

void EditDefinition(uintptr_t value) {
  WithEngineVoid([&](SpeechEngine& e) { e.EditDefinition(value); });
}

int Tools(uintptr_t value) {
  return WithEngine(0, [&](SpeechEngine& e) { return e.Tools(value); });
}

} // extern "C"
