// SPDX-License-Identifier: MIT
#include "text/syllable.h"

#include "text/char_classes.h"
#include "text/vocabulary.h"

namespace vntts {

namespace {

// Bytes that modify the vowel before them (tone, circumflex, breve and their combinations).
constexpr bool IsMarkByte(unsigned char b) {
  switch (b) {
  case 0xE0:
  case 0xE1:
  case 0xE2:
  case 0xE3:
  case 0xE4:
  case 0xE5:
  case 0xE8:
  case 0xE9:
  case 0xEA:
  case 0xEB:
  case 0xEF:
  case 0xF5:
  case 0xF8:
  case 0xF9:
  case 0xFA:
  case 0xFB:
  case 0xFC:
    return true;
  default:
    return false;
  }
}

// Vowel letters that stand alone: a e i o u y, ơ, ư and the one-byte forms of i and y.
constexpr bool IsVowelByte(unsigned char b) {
  switch (b) {
  case 'a':
  case 'e':
  case 'i':
  case 'o':
  case 'u':
  case 'y':
  case 0xF4:
  case 0xF6:
  case 0xED:
  case 0xEC:
  case 0xE6:
  case 0xF3:
  case 0xF2:
  case 0xEE:
    return true;
  default:
    return false;
  }
}

// Length of the onset consonant group: ngh ng nh ch gh gi kh ph qu th tr, or one of
// b c d đ g h k l m n p r s t v x; 0 when the word starts with a vowel or a stranger.
std::size_t OnsetLength(std::string_view w) {
  const char c1 = w.size() > 1 ? w[1] : '\0';
  switch (static_cast<unsigned char>(w[0])) {
  case 'n':
    if (c1 == 'g') return w.size() > 2 && w[2] == 'h' ? 3 : 2;
    return c1 == 'h' ? 2 : 1;
  case 'c':
  case 'k':
  case 'p':
    return c1 == 'h' ? 2 : 1;
  case 'g':
    return c1 == 'h' || c1 == 'i' ? 2 : 1;
  case 't':
    return c1 == 'h' || c1 == 'r' ? 2 : 1;
  case 'q':
    return c1 == 'u' ? 2 : 0;
  case 'b':
  case 'd':
  case 0xF1:
  case 'h':
  case 'l':
  case 'm':
  case 'r':
  case 's':
  case 'v':
  case 'x':
    return 1;
  default:
    return 0;
  }
}

bool IsCoda(std::string_view rest) {
  switch (rest.size()) {
  case 0:
    return true;
  case 1:
    return rest[0] == 'c' || rest[0] == 'm' || rest[0] == 'n' || rest[0] == 'p' || rest[0] == 't';
  case 2:
    return (rest[0] == 'c' && rest[1] == 'h') ||
           (rest[0] == 'n' && (rest[1] == 'g' || rest[1] == 'h'));
  default:
    return false;
  }
}

} // namespace

bool LooksLikeSyllable(std::string_view w) {
  if (w.empty() || w.size() > 12) return false;
  const std::size_t onset = OnsetLength(w);
  std::size_t i = onset;
  int vowels = 0;
  while (i < w.size() && IsVowelByte(static_cast<unsigned char>(w[i]))) {
    ++vowels;
    ++i;
    if (i < w.size() && IsMarkByte(static_cast<unsigned char>(w[i]))) ++i;
  }
  if (vowels > 3) return false;
  // "gi" may take its vowel from the onset: gìn is g + ìn, but gin is gi + n.
  if (vowels == 0 && !(onset == 2 && w[0] == 'g' && w[1] == 'i')) return false;
  return IsCoda(w.substr(i));
}

std::string SpellWord(std::string_view word) {
  std::string out;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = ToLowerInternal(word[i]);
    const auto b = static_cast<unsigned char>(c);
    if (b >= 'a' && b <= 'z') {
      if (i + 1 < word.size() && IsVowelByte(b) &&
          IsMarkByte(static_cast<unsigned char>(ToLowerInternal(word[i + 1])))) {
        out += ' ';
        out += c;
        out += ToLowerInternal(word[++i]);
        out += ' ';
        continue;
      }
      out += ' ';
      out += words::kLetterNames[b - 'a'];
      out += ' ';
    } else if (b == 0xF1) {
      out += ' ';
      out += words::kLetterDd;
      out += ' ';
    } else if (IsDigit(c)) {
      out += words::kDigitWords[static_cast<std::size_t>(c - '0')];
      out += ' ';
    } else if (IsVowelByte(b)) {
      out += ' ';
      out += c;
      if (i + 1 < word.size() &&
          IsMarkByte(static_cast<unsigned char>(ToLowerInternal(word[i + 1]))))
        out += ToLowerInternal(word[++i]);
      out += ' ';
    }
  }
  return out;
}

} // namespace vntts
