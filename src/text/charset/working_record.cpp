// SPDX-License-Identifier: MIT
#include "text/charset/working_record.h"

#include "text/charset/charset_table_data.h"

namespace vntts {

namespace {

// Entries of "Windows 95VN" that the stored record leaves incomplete or that are reset on
// every use: the toned capital I and Y letters take the marks of Á..Ạ, and the modified bases
// take their code page 1258 bytes.
constexpr int kPatchedI = 123;
constexpr int kPatchedY = 141;
constexpr int kMarkSource = 75;

struct BaseByte {
  int index;
  std::uint8_t byte;
};
constexpr BaseByte kWindows95Bases[] = {
    {6, 0xE2},  {12, 0xE3}, {24, 0xEA}, {36, 0xF4},  {42, 0xF5},  {60, 0xFD},  {73, 0xF0},
    {80, 0xC2}, {86, 0xC3}, {98, 0xCA}, {110, 0xD4}, {116, 0xD5}, {134, 0xDD}, {147, 0xD0},
};

} // namespace

const CharsetRecord* WorkingRecord::Stored(int index) {
  if (index < 0 || index >= kEncodingCount) return nullptr;
  return &kCharsetTable[static_cast<std::size_t>(index)];
}

WorkingRecord::WorkingRecord(int index) {
  letter_.fill(kNotFound);
  any_.fill(kNotFound);
  const CharsetRecord* stored = Stored(index);
  if (stored == nullptr) return;
  for (int x = 0; x < kLetterCount; ++x) {
    code_[static_cast<std::size_t>(x)] = stored->code[x];
    length_[static_cast<std::size_t>(x)] = stored->length[x];
  }
  if (index == kEncodingWindows95) {
    for (int k = 0; k < 5; ++k) {
      for (int first : {kPatchedI, kPatchedY}) {
        code_[static_cast<std::size_t>(first + k)] =
            code_[static_cast<std::size_t>(kMarkSource + k)];
        length_[static_cast<std::size_t>(first + k)] = 2;
      }
    }
    for (const auto& base : kWindows95Bases)
      code_[static_cast<std::size_t>(base.index)] = base.byte;
  }
  for (int x = kLetterCount - 1; x >= 0; --x) {
    const std::uint8_t b = code_[static_cast<std::size_t>(x)];
    any_[b] = static_cast<std::int16_t>(x);
  }
  letter_ = any_;
  for (std::uint8_t b : {'A', 'D', 'E', 'I', 'O', 'U', 'Y', 'a', 'd', 'e', 'i', 'o', 'u', 'y'})
    letter_[b] = kNotFound;
}

} // namespace vntts
