// Operations of the engine that are not built yet. Each returns the value its export gives on
// failure (0, null, nothing) and has no effect, so that a host sees "did not happen" rather than
// an invented result. An operation leaves this file when its real implementation lands.
#include "engine/speech_engine.h"

namespace vntts {

// The dialogs not built yet (the Speaker and Record windows live in src/ui).
void SpeechEngine::EditDefinition(std::uintptr_t) {}
int SpeechEngine::Tools(std::uintptr_t) {
  return 0;
}

} // namespace vntts
