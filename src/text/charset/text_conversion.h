// SPDX-License-Identifier: MIT
#pragma once
// Whole-text conversion between UTF-8, UTF-16 and the 19 legacy records, for the command
// line and for tools: the engine itself only needs the paths in charsets.h.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vntts {

struct TextEncoding {
  enum class Kind { kUtf8, kUtf16, kLegacy };
  Kind kind = Kind::kUtf8;
  int index = 0; // record index for Kind::Legacy
};

// "utf-8", "utf-16", a record index "0".."18" or a record name ("VNI-Windows ANSI",
// "vni-windows ansi", "ABC" for "A B C": case and blanks do not matter), or one of the short
// names listed in docs/charsets.md. Empty when nothing matches.
std::optional<TextEncoding> FindTextEncoding(std::string_view name);

// The display name of an encoding ("UTF-8", "UTF-16", or the record's stored name).
std::string TextEncodingName(TextEncoding encoding);

struct ConvertedText {
  std::string bytes;
  // Broken input: invalid UTF-8 sequences, lone UTF-16 surrogates, a trailing odd byte.
  std::size_t invalid = 0;
  // Characters a legacy target cannot hold even after folding (text_folding.h); they are '?'.
  std::size_t unrepresentable = 0;
};

// UTF-16 is read as little-endian unless it starts with a big-endian byte-order mark, and
// written little-endian with a byte-order mark. Broken input is replaced (U+FFFD in Unicode
// targets, '?' in legacy ones) and counted.
ConvertedText ConvertText(std::string_view input, TextEncoding from, TextEncoding to);

} // namespace vntts
