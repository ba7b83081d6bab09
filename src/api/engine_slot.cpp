// SPDX-License-Identifier: MIT
#include "api/engine_slot.h"

#include <chrono>
#include <list>
#include <mutex>

#include "api/host_messages.h"
#include "api/windows.h"
#include "core/allocation.h"

namespace vntts::api {
namespace {

// How long unloading the library waits for a released engine whose worker is still in host
// code; past it the engine is left as it is rather than freed under the worker.
constexpr auto kUnloadWait = std::chrono::seconds(5);

// The library's global state besides the message sink: the engine, and engines released while
// a worker of theirs was still in host code. Never destroyed, like the message sink: an
// unload-time release still needs them.
struct Slot {
  std::mutex mutex;
  EngineHandle engine;
  std::list<EngineHandle> released;
};

Slot& TheSlot() {
  alignas(Slot) static unsigned char storage[sizeof(Slot)];
  static Slot* const kSlot = new (storage) Slot;
  return *kSlot;
}

// Destroys the released engines that nobody uses any more and whose workers are out of host
// code. Never on a thread of the engine itself.
void DestroyFinishedEngines() {
  Slot& slot = TheSlot();
  std::list<EngineHandle> finished;
  {
    std::lock_guard lock(slot.mutex);
    for (auto it = slot.released.begin(); it != slot.released.end();) {
      SpeechEngine& e = **it;
      if (it->use_count() == 1 && !e.OnOwnWorker() && e.Idle())
        finished.splice(finished.end(), slot.released, it++);
      else
        ++it;
    }
  }
  // The engines are destroyed here, outside the lock.
}

bool HasReleasedEngines() {
  Slot& slot = TheSlot();
  std::lock_guard lock(slot.mutex);
  return !slot.released.empty();
}

} // namespace

EngineHandle ExistingEngine() {
  if (HasReleasedEngines()) DestroyFinishedEngines();
  Slot& slot = TheSlot();
  std::lock_guard lock(slot.mutex);
  return slot.engine;
}

EngineHandle EngineCreatedOnDemand() {
  if (EngineHandle engine = ExistingEngine()) return engine;
  std::unique_ptr<SpeechEngine> made =
      MakeOrNull<SpeechEngine>("engine", LibraryMessages(), DataFolder::Locate());
  if (!made) {
    LibraryMessages().Report("Out off memory !!!", "", MessageIcon::kError);
    return nullptr;
  }
  EngineHandle handle(std::move(made));
  Slot& slot = TheSlot();
  std::lock_guard lock(slot.mutex);
  // Two first calls may race from two threads; the one that comes second uses the first's.
  if (!slot.engine) slot.engine = handle;
  return slot.engine;
}

bool DestroyEngine() {
  // The windows work on the engine: they close before it goes.
  ReleaseWindows();
  EngineHandle engine;
  {
    Slot& slot = TheSlot();
    std::lock_guard lock(slot.mutex);
    engine = std::move(slot.engine);
  }
  if (!engine) return false;
  engine->Shutdown();
  {
    Slot& slot = TheSlot();
    std::lock_guard lock(slot.mutex);
    slot.released.push_back(std::move(engine));
  }
  DestroyFinishedEngines();
  return true;
}

namespace {

// A host that unloads the library (or exits) without ReleaseLib would leave the engine's worker
// threads running code that is about to be unmapped; stop them and free the engine first, and
// give an engine whose worker is still in host code a little time to come out of it.
[[gnu::destructor]] void ReleaseEngineAtUnload() {
  DestroyEngine();
  const auto until = std::chrono::steady_clock::now() + kUnloadWait;
  std::list<EngineHandle> waiting;
  {
    Slot& slot = TheSlot();
    std::lock_guard lock(slot.mutex);
    waiting = slot.released;
  }
  for (const EngineHandle& e : waiting)
    e->WaitUntilIdle(until);
  waiting.clear();
  DestroyFinishedEngines();
}

} // namespace

} // namespace vntts::api
