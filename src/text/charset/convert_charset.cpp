#include <cstdint>

#include "text/charset/charsets.h"
#include "text/charset/working_record.h"

namespace vntts {

namespace {

void EmitLetter(const WorkingRecord& target, int letter, std::string& out) {
  if (target.length(letter) == 1) {
    out.push_back(static_cast<char>(target.code(letter)));
    return;
  }
  out.push_back(static_cast<char>(target.code(GroupBase(letter))));
  out.push_back(static_cast<char>(target.code(letter)));
}

// A plain vowel followed by a mark byte of the source: the mark's index says which tone and,
// for the a, e and o groups, which modified base (â ă ê ô) the pair stands for.
int LetterOfVowelAndMark(int vowel, int mark) {
  const int tone = mark % kLowerCaseCount;
  int base = vowel;
  if (tone >= 6 && tone <= 11)
    base += 6;
  else if (tone >= 12 && tone <= 17 && (vowel == 0 || vowel == kLowerCaseCount))
    base += 12;
  return base + tone % kLettersPerGroup;
}

} // namespace

bool ConvertCharset(std::string_view source, std::string& target, int fromIndex, int toIndex) {
  target.clear();
  if (WorkingRecord::Stored(fromIndex) == nullptr || WorkingRecord::Stored(toIndex) == nullptr)
    return false;
  if (fromIndex == toIndex) {
    target.assign(source);
    return true;
  }
  const WorkingRecord from(fromIndex);
  const WorkingRecord to(toIndex);
  target.reserve(source.size() + source.size() / 2);

  const auto byte_at = [&](std::size_t p) { return static_cast<std::uint8_t>(source[p]); };
  const auto find_next = [&](std::size_t p) {
    return p + 1 < source.size() ? from.FindLetter(byte_at(p + 1)) : WorkingRecord::kNotFound;
  };

  std::size_t p = 0;
  while (p < source.size()) {
    const std::uint8_t c = byte_at(p);
    if (IsAsciiVowel(c)) {
      const int mark = find_next(p);
      if (mark == WorkingRecord::kNotFound || from.length(mark) == 1) {
        target.push_back(static_cast<char>(c));
        ++p;
        continue;
      }
      const int vowel = from.FindCode(c);
      if (vowel == WorkingRecord::kNotFound || vowel == kIndexDStroke ||
          vowel == kIndexDStroke + kLowerCaseCount) {
        target.push_back(static_cast<char>(c));
        ++p;
        continue;
      }
      EmitLetter(to, LetterOfVowelAndMark(vowel, mark), target);
      p += 2;
      continue;
    }
    if (c == '[' || c == ']' || c == '{' || c == '}') {
      target.push_back(static_cast<char>(c));
      ++p;
      continue;
    }
    const int x = from.FindLetter(c);
    if (x == WorkingRecord::kNotFound) {
      target.push_back(static_cast<char>(c));
      ++p;
      continue;
    }
    int letter = x;
    std::size_t step = 1;
    if (IsToneableBase(x)) {
      const int y = find_next(p);
      if (y != WorkingRecord::kNotFound && from.length(y) == 2) {
        const int tone = y % kLowerCaseCount % kLettersPerGroup;
        if (tone != 0 && y <= x + 5) {
          letter = x + tone;
          step = 2;
        }
      }
    }
    EmitLetter(to, letter, target);
    p += step;
  }
  return true;
}

std::size_t ExpandFromPivot(std::string_view source, std::string& target, int toIndex) {
  if (WorkingRecord::Stored(toIndex) == nullptr) return 0;
  target.clear();
  if (toIndex == kEncodingPivot) {
    target.assign(source);
    return target.size();
  }
  const WorkingRecord pivot(kEncodingPivot);
  const WorkingRecord to(toIndex);
  target.reserve(source.size() + source.size() / 2);
  for (const char ch : source) {
    const auto c = static_cast<std::uint8_t>(ch);
    const int x = IsAsciiVowel(c) ? WorkingRecord::kNotFound : pivot.FindLetter(c);
    if (x == WorkingRecord::kNotFound) {
      target.push_back(ch);
      continue;
    }
    if (IsToneableBase(x)) {
      if (to.length(x) == 2 && x >= 6 && x <= 134)
        target.push_back(static_cast<char>(PlainVowelOfGroup(x)));
      target.push_back(static_cast<char>(to.code(x)));
      continue;
    }
    if (to.length(x) == 1) {
      target.push_back(static_cast<char>(to.code(x)));
      continue;
    }
    const int base = GroupBase(x);
    if (to.length(base) == 1) {
      target.push_back(static_cast<char>(to.code(base)));
    } else if (const std::uint8_t vowel = PlainVowelOfGroup(x);
               vowel != 0 && vowel != 'i' && vowel != 'y' && vowel != 'I' && vowel != 'Y') {
      // The target's modified base is never written in front of a mark: ấ is a + mark.
      target.push_back(static_cast<char>(vowel));
    }
    target.push_back(static_cast<char>(to.code(x)));
  }
  return target.size();
}

} // namespace vntts
