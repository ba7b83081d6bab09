// SPDX-License-Identifier: MIT
#include "audio/mpeg/kernels.h"

namespace vntts::mpeg {

bool Runs(InstructionSet set) {
  switch (set) {
  case InstructionSet::kPortable:
    return true;
  case InstructionSet::kSse2:
    return Sse2Kernels() != nullptr;
  case InstructionSet::kAvx2:
#if defined(__x86_64__) || defined(__i386__)
    // The processor's answer includes whether the system saves the wide registers.
    return Avx2Kernels() != nullptr && __builtin_cpu_supports("avx2") &&
           __builtin_cpu_supports("fma");
#else
    return false;
#endif
  }
  return false;
}

InstructionSet BestInstructionSet() {
  if (Runs(InstructionSet::kAvx2)) return InstructionSet::kAvx2;
  if (Runs(InstructionSet::kSse2)) return InstructionSet::kSse2;
  return InstructionSet::kPortable;
}

const Kernels& KernelsFor(InstructionSet set) {
  if (!Runs(set)) set = BestInstructionSet();
  switch (set) {
  case InstructionSet::kAvx2:
    return *Avx2Kernels();
  case InstructionSet::kSse2:
    return *Sse2Kernels();
  case InstructionSet::kPortable:
    break;
  }
  return *PortableKernels();
}

const char* Name(InstructionSet set) {
  switch (set) {
  case InstructionSet::kAvx2:
    return "avx2";
  case InstructionSet::kSse2:
    return "sse2";
  case InstructionSet::kPortable:
    break;
  }
  return "portable";
}

} // namespace vntts::mpeg
