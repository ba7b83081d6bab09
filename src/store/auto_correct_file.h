// SPDX-License-Identifier: MIT
#pragma once
// The AutoCorrect file (".crt", and the engine's index/AutoCrt.crt): little-endian, no header,
// no version. A plain unsigned 32-bit pair count, then per pair the Replace text and the With
// text, each as a length-prefixed string of internal-encoding bytes without a terminator. The
// prefix is one byte for lengths below 255; else 0xFF and a 16-bit length below 0xFFFE; else
// 0xFF, 0xFFFF and a 32-bit length.
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vntts {

struct AutoCorrectPair {
  std::string replace; // the written form, as it stands in the text
  std::string with;    // what is read in its place
  bool operator==(const AutoCorrectPair&) const = default;
};

struct AutoCorrectParse {
  std::vector<AutoCorrectPair> pairs; // in file order; empty when error is set
  std::string error;                  // what is wrong with the bytes, empty on success
  bool ok() const { return error.empty(); }
};

// Reads the pairs in file order. Bytes after the last pair are ignored, as the original
// reader never looked at them. Never throws; a count or length that runs past the end of the
// bytes is reported before anything is allocated for it.
AutoCorrectParse ParseAutoCorrectFile(std::span<const std::uint8_t> bytes);

// The file bytes for `pairs`, in the order given.
std::vector<std::uint8_t> SerializeAutoCorrectFile(std::span<const AutoCorrectPair> pairs);

// The length prefix alone, shared with anything else that writes this string form.
void AppendArchiveStringLength(std::vector<std::uint8_t>& out, std::size_t length);

} // namespace vntts
