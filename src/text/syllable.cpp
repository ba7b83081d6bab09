#include "text/syllable.h"

#include <array>

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

constexpr std::array<std::string_view, 27> kOnsets = {
    "ngh",  "ng", "nh", "ch", "gh", "gi", "kh", "ph", "qu", "th", "tr", "b", "c", "d",
    "\xF1", "g",  "h",  "k",  "l",  "m",  "n",  "p",  "r",  "s",  "t",  "v", "x"};

constexpr std::array<std::string_view, 9> kCodas = {"ch", "ng", "nh", "c", "m", "n", "p", "t", ""};

} // namespace

bool LooksLikeSyllable(std::string_view w) {
  if (w.empty() || w.size() > 12) return false;
  std::size_t i = 0;
  std::string_view onset;
  for (std::string_view o : kOnsets)
    if (w.starts_with(o)) {
      onset = o;
      break;
    }
  i = onset.size();
  int vowels = 0;
  while (i < w.size() && IsVowelByte(static_cast<unsigned char>(w[i]))) {
    ++vowels;
    ++i;
    if (i < w.size() && IsMarkByte(static_cast<unsigned char>(w[i]))) ++i;
  }
  if (vowels > 3) return false;
  // "gi" and "qu" may take their vowel from the onset: gìn, gin, quy.
  if (vowels == 0 && onset != "gi") return false;
  const std::string_view rest = w.substr(i);
  for (std::string_view c : kCodas)
    if (rest == c) return true;
  return false;
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
