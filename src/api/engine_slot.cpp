#include "api/engine_slot.h"

#include <atomic>
#include <memory>

#include "api/host_messages.h"
#include "core/allocation.h"

namespace vntts::api {
namespace {

// The only global of the library besides the message sink. Atomic so that two first calls that
// race from two threads still end with one engine (the loser's engine is discarded).
constinit std::atomic<SpeechEngine*> the_engine{nullptr};

} // namespace

SpeechEngine* ExistingEngine() noexcept {
  return the_engine.load(std::memory_order_acquire);
}

SpeechEngine* EngineCreatedOnDemand() {
  if (SpeechEngine* engine = ExistingEngine()) return engine;
  std::unique_ptr<SpeechEngine> made =
      MakeOrNull<SpeechEngine>("engine", LibraryMessages(), DataFolder::Locate());
  if (!made) {
    LibraryMessages().report("Out off memory !!!", "", MessageIcon::Error);
    return nullptr;
  }
  SpeechEngine* expected = nullptr;
  if (the_engine.compare_exchange_strong(expected, made.get(), std::memory_order_acq_rel))
    return made.release();
  return expected; // another thread won; ours is destroyed here
}

bool DestroyEngine() noexcept {
  std::unique_ptr<SpeechEngine> engine(the_engine.exchange(nullptr, std::memory_order_acq_rel));
  return engine != nullptr;
}

namespace {

// A host that unloads the library (or exits) without ReleaseLib would leave the engine's worker
// threads running code that is about to be unmapped; stop them and free the engine first.
[[gnu::destructor]] void ReleaseEngineAtUnload() {
  DestroyEngine();
}

} // namespace

} // namespace vntts::api
