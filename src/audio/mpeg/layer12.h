// SPDX-License-Identifier: MIT
#pragma once
// Layer I and Layer II frame decoding: bit allocation, scale factors, sample requantisation
// and the synthesis of the subband samples. Stateless apart from the synthesis filter.
#include <cstddef>
#include <cstdint>

#include "audio/mpeg/frame_header.h"
#include "audio/mpeg/polyphase.h"

namespace vntts::mpeg {

// `frame` holds the whole frame followed by kBitReaderPadding readable bytes. Writes
// h.samples values per channel. `protected_bits` receives the number of bits that the frame's
// CRC covers after the check word.
void DecodeLayer1(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                  Polyphase& synth, float* const pcm[2], std::size_t& protected_bits);
void DecodeLayer2(const FrameHeader& h, const std::uint8_t* frame, std::size_t length,
                  Polyphase& synth, float* const pcm[2], std::size_t& protected_bits);

} // namespace vntts::mpeg
