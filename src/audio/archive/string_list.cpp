// SPDX-License-Identifier: MIT
#include "audio/archive/string_list.h"

namespace vntts {
namespace {

// A cursor over the input that refuses to step past its end.
class ByteCursor {
public:
  explicit ByteCursor(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  std::size_t Remaining() const { return bytes_.size() - pos_; }

  bool ReadU8(std::uint32_t& v) { return ReadLe(1, v); }
  bool ReadU16(std::uint32_t& v) { return ReadLe(2, v); }
  bool ReadU32(std::uint32_t& v) { return ReadLe(4, v); }

  bool ReadBytes(std::size_t n, std::string& out) {
    if (n > Remaining()) return false;
    out.assign(reinterpret_cast<const char*>(bytes_.data() + pos_), n);
    pos_ += n;
    return true;
  }

private:
  bool ReadLe(std::size_t width, std::uint32_t& v) {
    if (width > Remaining()) return false;
    v = 0;
    for (std::size_t i = 0; i < width; ++i)
      v |= static_cast<std::uint32_t>(bytes_[pos_ + i]) << (8 * i);
    pos_ += width;
    return true;
  }

  std::span<const std::uint8_t> bytes_;
  std::size_t pos_ = 0;
};

bool ReadLength(ByteCursor& in, std::uint32_t& length) {
  if (!in.ReadU8(length)) return false;
  if (length < 0xFF) return true;
  if (!in.ReadU16(length)) return false;
  if (length < 0xFFFF) return true;
  return in.ReadU32(length);
}

void AppendLe(std::vector<std::uint8_t>& out, std::uint32_t v, int width) {
  for (int i = 0; i < width; ++i)
    out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

} // namespace

std::optional<std::vector<std::string>> ParseStringList(std::span<const std::uint8_t> bytes) {
  ByteCursor in(bytes);
  std::uint32_t count = 0;
  if (!in.ReadU16(count)) return std::nullopt;
  if (count == 0xFFFF && !in.ReadU32(count)) return std::nullopt;
  // Every string needs at least its one-byte prefix, so a count beyond the remaining bytes is a
  // lie that is caught before anything is reserved.
  if (count > in.Remaining()) return std::nullopt;
  std::vector<std::string> strings;
  strings.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::uint32_t length = 0;
    std::string s;
    if (!ReadLength(in, length) || !in.ReadBytes(length, s)) return std::nullopt;
    strings.push_back(std::move(s));
  }
  return strings;
}

void AppendLengthPrefix(std::vector<std::uint8_t>& out, std::size_t length) {
  if (length < 0xFF) {
    AppendLe(out, static_cast<std::uint32_t>(length), 1);
  } else if (length < 0xFFFE) {
    AppendLe(out, 0xFF, 1);
    AppendLe(out, static_cast<std::uint32_t>(length), 2);
  } else {
    AppendLe(out, 0xFF, 1);
    AppendLe(out, 0xFFFF, 2);
    AppendLe(out, static_cast<std::uint32_t>(length), 4);
  }
}

void AppendCountPrefix(std::vector<std::uint8_t>& out, std::size_t count) {
  if (count < 0xFFFF) {
    AppendLe(out, static_cast<std::uint32_t>(count), 2);
  } else {
    AppendLe(out, 0xFFFF, 2);
    AppendLe(out, static_cast<std::uint32_t>(count), 4);
  }
}

std::vector<std::uint8_t> SerializeStringList(std::span<const std::string> strings) {
  std::vector<std::uint8_t> out;
  AppendCountPrefix(out, strings.size());
  for (const auto& s : strings) {
    AppendLengthPrefix(out, s.size());
    out.insert(out.end(), s.begin(), s.end());
  }
  return out;
}

} // namespace vntts
