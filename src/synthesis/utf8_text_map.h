// SPDX-License-Identifier: MIT
#pragma once
// The engine's internal text made from a UTF-8 text, with the way back: for any byte range of
// the internal text, the range of the UTF-8 text it came from. Word events carry internal
// offsets, which a host that gave UTF-8 cannot use until they are mapped back.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vntts {

class Utf8TextMap {
public:
  // Converts `utf8` as the UTF-8 speak path does (internal() equals Utf8ToInternal(utf8)).
  explicit Utf8TextMap(std::string_view utf8);

  const std::string& internal() const { return internal_; }

  // The UTF-8 range [first, second) that internal bytes [start, start + length) came from: a
  // range that starts or ends inside a character's bytes is widened to the whole character.
  // Offsets past the end are taken as the end.
  std::pair<std::uint32_t, std::uint32_t> ToUtf8(std::size_t start, std::size_t length) const;

private:
  // A stretch of the internal text: bytes of plain ASCII copied one for one (linear), or one
  // character whose bytes all come from the same UTF-8 character.
  struct Segment {
    std::uint32_t internal = 0;
    std::uint32_t utf8 = 0;
    bool linear = false;
  };

  void MapCharacters(std::string_view utf8);
  void MapWords(std::string_view utf8);
  std::size_t SegmentAt(std::size_t internal_offset) const;
  std::uint32_t StartOf(std::size_t offset) const;
  std::uint32_t EndOf(std::size_t offset) const;

  std::string internal_;
  std::vector<Segment> segments_;
  std::uint32_t utf8_size_ = 0;
};

} // namespace vntts
