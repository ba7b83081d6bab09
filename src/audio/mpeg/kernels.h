// SPDX-License-Identifier: MIT
#pragma once
// The decoder's hot loops (the synthesis filter bank, the long-block IMDCT with its window and
// overlap, and the conversion to 16-bit samples), built once per instruction set and chosen
// at run time: the widest vector unit the processor has (AVX2 with FMA), else SSE2, else plain
// C++. The library thus runs on any x86-64, fast on the newer ones; the plain C++ set runs
// everywhere and the tests run every set the machine can.
#include <cstddef>
#include <cstdint>

namespace vntts::mpeg {

enum class InstructionSet : std::uint8_t { kPortable, kSse2, kAvx2 };

// The state the synthesis filter bank carries from one time slot to the next: per channel
// the last 16 rows of 64 matrixed values, and which row is the newest.
struct SynthesisHistory {
  alignas(32) float v[2][16][64];
  unsigned newest[2];
};

struct Kernels {
  InstructionSet set;
  // Filters `count` consecutive time slots of 32 subband samples of channel ch into 32 PCM
  // samples each (16-bit units, not rounded).
  void (*synthesize)(SynthesisHistory& history, int ch, const float* slots, int count, float* out);
  // Long-block IMDCT, window, overlap-add and frequency inversion of subbands [0, count) of
  // 18 lines each in `x`; the overlap and the output slots are time-major ([i * 32 + sb]).
  // Subbands past `count` may be done too, up to the next multiple of the vector width
  // (their lines must be valid, zero or not). Returns how many subbands it did.
  int (*long_subbands)(const float* x, int count, const float* window, float* overlap,
                       float* slots);
  // Rounds to nearest and clips planar PCM into interleaved 16-bit samples with out_channels
  // channels: a mono frame is copied to both channels of stereo output, a stereo frame is
  // averaged into mono output.
  void (*to_s16)(const float* left, const float* right, int frame_channels, int out_channels,
                 std::size_t samples, std::int16_t* out);
};

// The widest set that this build has and this processor runs.
InstructionSet BestInstructionSet();
// Whether this build has the set and this processor runs it.
bool Runs(InstructionSet set);
// The kernels of a set, or of the best set that runs when it does not.
const Kernels& KernelsFor(InstructionSet set);
const char* Name(InstructionSet set);

// Each set's kernels, from its own file; null when the build does not have the set.
const Kernels* PortableKernels();
const Kernels* Sse2Kernels();
const Kernels* Avx2Kernels();

} // namespace vntts::mpeg
