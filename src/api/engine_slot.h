// SPDX-License-Identifier: MIT
#pragma once
// The library's one engine: made by the first export that needs it, destroyed by ReleaseLib.
//
// An export holds the engine for the length of its call, so a ReleaseLib from a notification
// function (or from another thread) never frees an engine under a call that is still using it.
// An engine released while one of its workers is still inside host code (the very callback that
// called ReleaseLib, or one that waits for the host) is destroyed later, once that worker is
// done: by the next export that comes along, or when the library is unloaded.
#include <memory>

#include "engine/speech_engine.h"

namespace vntts::api {

using EngineHandle = std::shared_ptr<SpeechEngine>;

// The engine if one exists, else null; never creates one.
EngineHandle ExistingEngine();

// The engine, created first when there is none. When memory runs out the user is told
// "Out off memory !!!" and the result is null; the next call tries again.
EngineHandle EngineCreatedOnDemand();

// Stops and destroys the engine (later, when a worker is in host code). True if there was one.
bool DestroyEngine();

} // namespace vntts::api
