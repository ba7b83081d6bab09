// Output handles for the ...Ex speak calls: the host names a sound output once and speaks
// through it as often as it likes.
#include <new>
#include <string>

#include "api/export_guard.h"
#include "engine/output_target.h"

extern "C" {

VNOutputHandle VNOpenOutput(const char* device_name) {
  if (device_name == nullptr || *device_name == '\0') return 0;
  auto* target = new (std::nothrow) vntts::OutputTarget;
  if (target == nullptr) return 0;
  try {
    target->device_name = device_name;
  } catch (...) {
    delete target;
    return 0;
  }
  return reinterpret_cast<VNOutputHandle>(target);
}

void VNCloseOutput(VNOutputHandle output) {
  delete reinterpret_cast<vntts::OutputTarget*>(output);
}

} // extern "C"
