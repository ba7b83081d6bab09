// SPDX-License-Identifier: MIT
// Output handles for the ...Ex speak calls: the host names a sound output once and speaks
// through it as often as it likes.
#include <new>
#include <string>

#include "api/export_guard.h"
#include "audio/wave_device.h"
#include "engine/output_target.h"

using vntts::SpeechEngine;
using namespace vntts::api;

extern "C" {

VNOutputHandle VNOpenOutput(const char* device_name) {
  if (device_name == nullptr || *device_name == '\0') return 0;
  return Guarded<VNOutputHandle>(0, [&]() -> VNOutputHandle {
    // A name no sound system can open is refused now, not at every speak call after.
    if (const auto r = vntts::ProbeOutput(device_name); r != vntts::device_result::kOk) {
      LibraryMessages().Report(vntts::DeviceResultText(r), "", vntts::MessageIcon::kInformation);
      return 0;
    }
    auto target = std::make_unique<vntts::OutputTarget>();
    target->device_name = device_name;
    return reinterpret_cast<VNOutputHandle>(target.release());
  });
}

void VNCloseOutput(VNOutputHandle output) {
  if (output == 0) return;
  WithExistingEngineVoid([&](SpeechEngine& e) { e.ForgetOutput(output); });
  delete reinterpret_cast<vntts::OutputTarget*>(output);
}

} // extern "C"
