// SPDX-License-Identifier: MIT
// Waiting for speech to finish: a host that speaks into a file, or speaks and then exits, has no
// event that says the last sentence is written, so it may block here instead of polling.
#include <chrono>

#include "api/export_guard.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

int VNWaitUntilDone(uint32_t timeout_ms) {
  // Without an engine nothing is speaking: already done.
  return WithExistingEngine(1, [&](SpeechEngine& e) {
    return e.WaitUntilDone(std::chrono::milliseconds(timeout_ms)) ? 1 : 0;
  });
}

} // extern "C"
