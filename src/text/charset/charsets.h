// SPDX-License-Identifier: MIT
#pragma once
// Conversion between the Vietnamese character sets the engine accepts and its own internal
// text ("VNI-Windows ANSI" bytes, encoding index 3).
//
// Three forms reach the engine: internal bytes (used as they stand), code page 1258 text
// with separate tone bytes ("Windows 95VN", index 17) and UTF-8. The two latter are brought
// to the internal form through the one-byte-per-letter pivot "VS1" (index 7). The
// converters never fail on unknown bytes: anything that is not a Vietnamese letter passes
// through unchanged. See docs/charsets.md for the exact behaviour on odd input.
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace vntts {

// Code pages understood by MultiByteToUtf16.
inline constexpr unsigned kCodePageWindows1258 = 1258;
inline constexpr unsigned kCodePageUtf8 = 65001;

// 8-bit text from encoding `from_index` to encoding `to_index` (0..18) by the letter tables.
// Equal indices copy the text byte for byte. Returns false, leaving `target` empty, only
// when an index names no record. Targets whose group bases take two bytes (such as the
// internal encoding) get the base's own code before the mark; use ExpandFromPivot to write
// them the way their fonts expect.
bool ConvertCharset(std::string_view source, std::string& target, int from_index, int to_index);

// Pivot ("VS1") text to encoding `to_index`, writing the plain vowel in front of a mark where
// the target's modified base takes two bytes (ấ becomes 61 E1 in the internal encoding).
// Returns the number of bytes written; 0 without writing when `to_index` names no record.
std::size_t ExpandFromPivot(std::string_view source, std::string& target, int to_index);

// UTF-16 to code page 1258 bytes with every toned letter written as base + tone byte. Code
// units outside Latin-1 that are not Vietnamese letters keep only their low byte. With a
// null `bytes` it only counts.
std::size_t Utf16ToCp1258(std::u16string_view text, std::string* bytes);

// Base letter + combining tone mark pairs to precomposed letters; returns the unit count.
std::size_t ComposeUtf16(std::u16string_view text, std::u16string& composed);

// Legacy 8-bit text of encoding `from_index` to precomposed UTF-16 (for display); returns the
// number of code units, and with a null `utf16` only counts. Returns 0 for an unknown index.
std::size_t LegacyToUtf16(int from_index, std::string_view text, std::u16string* utf16);

// True if any code unit is a Vietnamese letter, a base vowel or one of the five combining
// tone marks (so plain vowels count too); false for an empty string.
bool ContainsVietnamese(std::u16string_view utf16);

// UTF-8 (or code page 1258) bytes to UTF-16. Broken UTF-8 becomes U+FFFD, one per maximal
// invalid sequence. Returns the number of code units; 0 for an unknown code page.
std::size_t MultiByteToUtf16(unsigned code_page, std::string_view text, std::u16string& utf16);

// The UTF-8 speak path: UTF-8 to UTF-16 to code page 1258 bytes to the pivot to internal
// text. "Việt" becomes 56 69 65 E4 74. Broken UTF-8 sequences become '?'.
std::string Utf8ToInternal(std::string_view utf8);

// The code page 1258 ("Windows 95VN") speak path: index 17 to the pivot to internal text.
std::string AsciiToInternal(std::string_view windows95vn);

// Internal text to UTF-8, for printing and display.
std::string InternalToUtf8(std::string_view internal);

// Internal text to UTF-8 in successive parts, such as a command's output written as it is
// made. Each part must end after a blank or a line end (or be the last); it then converts
// exactly as InternalToUtf8 would, and words met in earlier parts are not converted again.
class InternalToUtf8Stream {
public:
  InternalToUtf8Stream();
  ~InternalToUtf8Stream();
  InternalToUtf8Stream(const InternalToUtf8Stream&) = delete;
  InternalToUtf8Stream& operator=(const InternalToUtf8Stream&) = delete;

  std::string Convert(std::string_view internal);

private:
  struct State;
  std::unique_ptr<State> state_;
};

// UTF-8 to the legacy encoding `to_index` (0..18), by the same road as the UTF-8 speak path
// with the last step writing `to_index`. Empty for an unknown index.
std::string Utf8ToLegacy(std::string_view utf8, int to_index);

// Legacy text of encoding `from_index` to UTF-8 (precomposed). Empty for an unknown index.
std::string LegacyToUtf8(std::string_view text, int from_index);

} // namespace vntts
