// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the unit decoder as the archive does: SetStream, then DecodeAll.
// The decoded length must fit the format's block alignment and every byte of it must be
// readable. The input's length picks the instruction set (every one the machine runs) and
// whether gapless trimming is on, so that all of them meet the same inputs.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "audio/mpeg/unit_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vntts::UnitDecoder decoder;
  constexpr vntts::mpeg::InstructionSet kSets[] = {vntts::mpeg::InstructionSet::kPortable,
                                                   vntts::mpeg::InstructionSet::kSse2,
                                                   vntts::mpeg::InstructionSet::kAvx2};
  decoder.SetInstructionSet(kSets[size % 3]);
  decoder.SetGapless((size / 3) % 2 == 0);
  decoder.SetStream(data, static_cast<std::uint32_t>(size));
  const auto pcm = decoder.DecodeAll();
  const std::uint32_t bytes = decoder.decoded_length();
  if (bytes && decoder.output_format().block_align &&
      bytes % decoder.output_format().block_align != 0)
    std::abort();
  volatile std::uint8_t sink = 0;
  for (std::uint32_t i = 0; i < bytes; i += 64)
    sink = sink ^ pcm[i];
  (void)sink;
  return 0;
}
