// SPDX-License-Identifier: MIT
#include "store/auto_correct_file.h"

namespace vntts {
namespace {

constexpr std::uint32_t kByteEscape = 0xFF;
constexpr std::uint32_t kWordEscape = 0xFFFF;
// MFC marks a wide-character string with this 16-bit length; our files never hold one.
constexpr std::uint32_t kWideMarker = 0xFFFE;
// Smallest pair on disk: two one-byte prefixes of empty strings.
constexpr std::size_t kMinPairBytes = 2;

class ByteReader {
public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  std::size_t offset() const { return pos_; }
  std::size_t remaining() const { return bytes_.size() - pos_; }

  bool ReadLe(std::size_t width, std::uint32_t& value) {
    if (width > remaining()) return false;
    value = 0;
    for (std::size_t i = 0; i < width; ++i)
      value |= static_cast<std::uint32_t>(bytes_[pos_ + i]) << (8 * i);
    pos_ += width;
    return true;
  }

  bool ReadText(std::size_t length, std::string& out) {
    if (length > remaining()) return false;
    out.assign(reinterpret_cast<const char*>(bytes_.data() + pos_), length);
    pos_ += length;
    return true;
  }

private:
  std::span<const std::uint8_t> bytes_;
  std::size_t pos_ = 0;
};

// Reads one length-prefixed string; on failure says why in `error`.
bool ReadArchiveString(ByteReader& in, std::string& out, std::string& error) {
  const std::size_t start = in.offset();
  std::uint32_t length = 0;
  bool complete = in.ReadLe(1, length);
  if (complete && length == kByteEscape) {
    complete = in.ReadLe(2, length);
    if (complete && length == kWideMarker) {
      error = "wide-character string at byte " + std::to_string(start) + " is not supported";
      return false;
    }
    if (complete && length == kWordEscape) complete = in.ReadLe(4, length);
  }
  if (!complete) {
    error = "the length of a string at byte " + std::to_string(start) + " is cut off";
    return false;
  }
  if (!in.ReadText(length, out)) {
    error = "a string of " + std::to_string(length) + " bytes at byte " + std::to_string(start) +
            " runs past the end of the file";
    return false;
  }
  return true;
}

void AppendLe(std::vector<std::uint8_t>& out, std::uint32_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i)
    out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

} // namespace

void AppendArchiveStringLength(std::vector<std::uint8_t>& out, std::size_t length) {
  if (length < kByteEscape) {
    AppendLe(out, static_cast<std::uint32_t>(length), 1);
  } else if (length < kWideMarker) {
    AppendLe(out, kByteEscape, 1);
    AppendLe(out, static_cast<std::uint32_t>(length), 2);
  } else {
    AppendLe(out, kByteEscape, 1);
    AppendLe(out, kWordEscape, 2);
    AppendLe(out, static_cast<std::uint32_t>(length), 4);
  }
}

AutoCorrectParse ParseAutoCorrectFile(std::span<const std::uint8_t> bytes) {
  AutoCorrectParse result;
  ByteReader in(bytes);
  std::uint32_t count = 0;
  if (!in.ReadLe(4, count)) {
    result.error = "the file is too short to hold a pair count";
    return result;
  }
  if (count > in.remaining() / kMinPairBytes) {
    result.error = "the pair count " + std::to_string(count) + " is more than the " +
                   std::to_string(in.remaining()) + " remaining bytes can hold";
    return result;
  }
  result.pairs.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    AutoCorrectPair pair;
    std::string why;
    if (!ReadArchiveString(in, pair.replace, why) || !ReadArchiveString(in, pair.with, why)) {
      result.error = "pair " + std::to_string(i + 1) + " of " + std::to_string(count) + ": " + why;
      result.pairs.clear();
      return result;
    }
    result.pairs.push_back(std::move(pair));
  }
  return result;
}

std::vector<std::uint8_t> SerializeAutoCorrectFile(std::span<const AutoCorrectPair> pairs) {
  std::vector<std::uint8_t> out;
  std::size_t size = 4;
  for (const auto& pair : pairs)
    size += pair.replace.size() + pair.with.size() + 2 * 7;
  out.reserve(size);
  AppendLe(out, static_cast<std::uint32_t>(pairs.size()), 4);
  for (const auto& pair : pairs)
    for (const std::string* text : {&pair.replace, &pair.with}) {
      AppendArchiveStringLength(out, text->size());
      out.insert(out.end(), text->begin(), text->end());
    }
  return out;
}

} // namespace vntts
