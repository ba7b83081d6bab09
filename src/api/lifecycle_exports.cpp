// SPDX-License-Identifier: MIT
// The end of the engine's life, and the library-wide extensions that need no engine.
#include "api/export_guard.h"

using namespace vntts::api;

extern "C" {

int ReleaseLib(void) {
  return Guarded(0, [] { return DestroyEngine() ? 1 : 0; });
}

void VNSetMessageHandler(VNMessageProc handler, uintptr_t user) {
  GuardedVoid([&] { LibraryMessages().Install(handler, user); });
}

} // extern "C"
