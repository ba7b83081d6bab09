// SPDX-License-Identifier: MIT
#include "synthesis/utf8_text_map.h"

#include <algorithm>
#include <unordered_map>

#include "synthesis/utf8_characters.h"
#include "text/charset/charsets.h"

namespace vntts {

Utf8TextMap::Utf8TextMap(std::string_view utf8)
    : utf8_size_(static_cast<std::uint32_t>(utf8.size())) {
  MapCharacters(utf8);
  // Conversion looks no further than the next character, so converting one character (with
  // its combining marks) at a time gives the same text; where it does not, words are the
  // finest pieces we map.
  const std::string whole = Utf8ToInternal(utf8);
  if (internal_ != whole) MapWords(utf8);
  internal_ = whole;
}

void Utf8TextMap::MapCharacters(std::string_view utf8) {
  internal_.clear();
  segments_.clear();
  // A text uses few distinct letters; each is converted once.
  std::unordered_map<std::string_view, std::string> converted;
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    const auto u8 = static_cast<std::uint32_t>(pos);
    const auto at = static_cast<std::uint32_t>(internal_.size());
    if (static_cast<unsigned char>(utf8[pos]) < 0x80) {
      std::size_t end = pos;
      while (end < utf8.size() && static_cast<unsigned char>(utf8[end]) < 0x80 &&
             !IsCombiningMark(utf8, end + 1))
        ++end;
      if (end > pos) {
        if (segments_.empty() || !segments_.back().linear) segments_.push_back({at, u8, true});
        internal_.append(utf8.substr(pos, end - pos));
        pos = end;
        continue;
      }
    }
    std::size_t end = pos + CharacterLength(utf8, pos);
    while (end < utf8.size() && IsCombiningMark(utf8, end))
      end += CharacterLength(utf8, end);
    segments_.push_back({at, u8, false});
    const std::string_view character = utf8.substr(pos, end - pos);
    auto known = converted.find(character);
    if (known == converted.end())
      known = converted.emplace(character, Utf8ToInternal(character)).first;
    internal_ += known->second;
    pos = end;
  }
}

void Utf8TextMap::MapWords(std::string_view utf8) {
  internal_.clear();
  segments_.clear();
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    const std::size_t blank = utf8.find(' ', pos);
    const std::size_t end = blank == std::string_view::npos ? utf8.size() : blank + 1;
    segments_.push_back(
        {static_cast<std::uint32_t>(internal_.size()), static_cast<std::uint32_t>(pos), false});
    internal_ += Utf8ToInternal(utf8.substr(pos, end - pos));
    pos = end;
  }
}

std::size_t Utf8TextMap::SegmentAt(std::size_t internal_offset) const {
  const auto after =
      std::upper_bound(segments_.begin(), segments_.end(), internal_offset,
                       [](std::size_t offset, const Segment& s) { return offset < s.internal; });
  return static_cast<std::size_t>(after - segments_.begin()) - 1;
}

std::uint32_t Utf8TextMap::StartOf(std::size_t offset) const {
  if (offset >= internal_.size() || segments_.empty()) return utf8_size_;
  const Segment& s = segments_[SegmentAt(offset)];
  return s.linear ? s.utf8 + static_cast<std::uint32_t>(offset - s.internal) : s.utf8;
}

std::uint32_t Utf8TextMap::EndOf(std::size_t offset) const {
  if (offset == 0 || segments_.empty()) return 0;
  if (offset >= internal_.size()) return utf8_size_;
  const std::size_t i = SegmentAt(offset - 1);
  const Segment& s = segments_[i];
  if (s.linear) return s.utf8 + static_cast<std::uint32_t>(offset - s.internal);
  return i + 1 < segments_.size() ? segments_[i + 1].utf8 : utf8_size_;
}

std::pair<std::uint32_t, std::uint32_t> Utf8TextMap::ToUtf8(std::size_t start,
                                                            std::size_t length) const {
  const std::size_t end =
      start + std::min(length, internal_.size() - std::min(start, internal_.size()));
  const std::uint32_t first = StartOf(start);
  return {first, std::max(first, EndOf(end))};
}

} // namespace vntts
