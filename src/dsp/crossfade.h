// SPDX-License-Identifier: MIT
#pragma once
// Joins two pieces of speech (signed 16-bit mono samples at the unit rate) with a short
// crossfade, for a word the speak path renders as two syllables. A plain butt joint clicks
// wherever the first piece ends away from zero; overlapping the last frames of the first piece
// with the first frames of the second under complementary raised-cosine gains removes the step.
// The gains sum to one at every frame, so the joined samples never exceed the larger of the two
// inputs and nothing clips.
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vntts {

// 2 ms at 22050 Hz. Units of the default voice start with 2 ms of faded lead and end in faded
// silence, so the overlap lies in silence and the second syllable's onset (a stop's burst) keeps
// its edge; a longer fade would ramp into it. For recordings that stop or start in sound, 2 ms
// still turns the step into a smooth change.
inline constexpr std::size_t kWordJoinCrossfadeFrames = 44;

// Frames actually overlapped: the fade length, cut to the shorter piece.
std::size_t CrossfadeOverlap(std::size_t first_frames, std::size_t second_frames,
                             std::size_t fade_frames);

// first ++ second with the overlap faded; its length is first + second - overlap.
std::vector<std::int16_t> CrossfadeJoin(std::span<const std::int16_t> first,
                                        std::span<const std::int16_t> second,
                                        std::size_t fade_frames = kWordJoinCrossfadeFrames);

// The same on little-endian sample bytes, as the speak path's buffers hold them: writes the
// joined bytes into `out` and returns their count, or returns 0 and writes nothing when `out`
// is too small. A trailing odd byte of either piece is not a sample and is dropped.
std::size_t CrossfadeJoinBytes(std::span<const std::uint8_t> first,
                               std::span<const std::uint8_t> second, std::span<std::uint8_t> out,
                               std::size_t fade_frames = kWordJoinCrossfadeFrames);

} // namespace vntts
