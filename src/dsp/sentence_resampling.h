// SPDX-License-Identifier: MIT
#pragma once
// Rate conversion of a whole sentence of mono 16-bit samples for the rates the neighbour-mean
// upsampler does not serve (11025 Hz and any rate a loaded wave left on the output). Going down,
// the signal is low-pass filtered first so that nothing above the new Nyquist folds back.
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

std::vector<std::int16_t> ResampleSentence(std::span<const std::int16_t> in, std::uint32_t from,
                                           std::uint32_t to);

} // namespace vntts
