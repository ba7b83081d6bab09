// SPDX-License-Identifier: MIT
// The notification target and the event list.
#include "api/export_guard.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

VNNotifyProc SetNotifyFunc(VNNotifyProc notify, uintptr_t user) {
  return WithEngine<VNNotifyProc>(nullptr,
                                  [&](SpeechEngine& e) { return e.SetNotify(notify, user); });
}

uint32_t AddVNEvent(const VNEvent* event) {
  return WithEngine<uint32_t>(0, [&](SpeechEngine& e) -> uint32_t {
    if (!event) // nothing to add: the list is unchanged; the engine must still exist afterwards
      return 0;
    return e.AddEvent(*event);
  });
}

void RemoveAllEvents(void) {
  WithEngineVoid([](SpeechEngine& e) { e.RemoveAllEvents(); });
}

} // extern "C"
