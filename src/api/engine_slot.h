#pragma once
// The library's one engine: made by the first export that needs it, destroyed by ReleaseLib.
#include "engine/speech_engine.h"

namespace vntts::api {

// The engine if one exists, else null; never creates one.
SpeechEngine* ExistingEngine() noexcept;

// The engine, created first when there is none. When memory runs out the user is told
// "Out off memory !!!" and the result is null; the next call tries again.
SpeechEngine* EngineCreatedOnDemand();

// Stops and destroys the engine. True if there was one.
bool DestroyEngine() noexcept;

} // namespace vntts::api
