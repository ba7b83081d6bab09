// SPDX-License-Identifier: MIT
#pragma once
// What an output handle of the ...Ex speak calls stands for: a named sound output (a PulseAudio
// sink or an ALSA PCM) that the host opened with VNOpenOutput. The handle is the address of one
// of these; the engine copies the name when it takes the handle, so a host may close the handle
// while speech goes on.
#include <string>

#include "vntts/vntts.h"

namespace vntts {

struct OutputTarget {
  std::string device_name;
};

inline const OutputTarget* ToOutputTarget(VNOutputHandle handle) {
  return reinterpret_cast<const OutputTarget*>(handle);
}

} // namespace vntts
