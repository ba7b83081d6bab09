// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <memory>
#include <mutex>

#include "text/charset/charsets.h"
#include "text/charset/working_record.h"

namespace vntts {

namespace {

// Every input byte gives at most two output bytes, so both converters write into a buffer
// sized up front and trim it at the end.
class ByteWriter {
public:
  ByteWriter(std::string& out, std::size_t input_size) : out_(out) {
    out_.resize(2 * input_size);
    next_ = out_.data();
  }
  ~ByteWriter() { out_.resize(static_cast<std::size_t>(next_ - out_.data())); }
  ByteWriter(const ByteWriter&) = delete;
  ByteWriter& operator=(const ByteWriter&) = delete;

  void Put(std::uint8_t b) { *next_++ = static_cast<char>(b); }
  void Put(char c) { *next_++ = c; }

private:
  std::string& out_;
  char* next_;
};

// Up to two bytes to write for one letter or one byte, prepared once per call.
struct Output {
  std::uint8_t count = 0;
  std::array<std::uint8_t, 2> bytes{};

  void Add(std::uint8_t b) { bytes[count++] = b; }
};

// The target form of each letter: its code, or the code of its group base then its own code.
std::array<Output, kLetterCount> TargetForms(const WorkingRecord& target) {
  std::array<Output, kLetterCount> forms{};
  for (int x = 0; x < kLetterCount; ++x) {
    Output& form = forms[static_cast<std::size_t>(x)];
    if (target.Length(x) == 2) form.Add(target.Code(GroupBase(x)));
    form.Add(target.Code(x));
  }
  return forms;
}

void Emit(const Output& o, ByteWriter& out) {
  out.Put(o.bytes[0]);
  if (o.count == 2) out.Put(o.bytes[1]);
}

// How ExpandFromPivot writes one pivot byte in the target encoding. Bytes are independent of
// their neighbours there, so the whole conversion is one table per call.
Output ExpansionOf(std::uint8_t c, const WorkingRecord& pivot, const WorkingRecord& to) {
  Output o;
  const int x = IsAsciiVowel(c) ? WorkingRecord::kNotFound : pivot.FindLetter(c);
  if (x == WorkingRecord::kNotFound) {
    o.Add(c);
    return o;
  }
  if (IsToneableBase(x)) {
    if (to.Length(x) == 2 && x >= 6 && x <= 134) o.Add(PlainVowelOfGroup(x));
    o.Add(to.Code(x));
    return o;
  }
  if (to.Length(x) == 1) {
    o.Add(to.Code(x));
    return o;
  }
  const int base = GroupBase(x);
  if (to.Length(base) == 1) {
    o.Add(to.Code(base));
  } else if (const std::uint8_t vowel = PlainVowelOfGroup(x);
             vowel != 0 && vowel != 'i' && vowel != 'y' && vowel != 'I' && vowel != 'Y') {
    // The target's modified base is never written in front of a mark: ấ is a + mark.
    o.Add(vowel);
  }
  o.Add(to.Code(x));
  return o;
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

// Per source byte: how it starts a letter, and which letter of length 2 it is when it follows
// one (the only case in which a following byte matters).
enum class Start : std::uint8_t { kOther, kAsciiVowel, kLetter };

// Everything ConvertCharset needs to know about one pair of encodings. The records never
// change, so the tables are built once per pair and shared: short texts (one word, one line)
// would otherwise spend most of their time preparing them.
struct Conversion {
  Conversion(int from_index, int to_index) : from(from_index) {
    forms = TargetForms(WorkingRecord(to_index));
    for (int b = 0; b < 256; ++b) {
      const auto byte = static_cast<std::uint8_t>(b);
      const int x = from.FindLetter(byte);
      const bool bracket = b == '[' || b == ']' || b == '{' || b == '}';
      start[byte] = IsAsciiVowel(byte)                         ? Start::kAsciiVowel
                    : bracket || x == WorkingRecord::kNotFound ? Start::kOther
                                                               : Start::kLetter;
      second[byte] = x != WorkingRecord::kNotFound && from.Length(x) == 2
                         ? static_cast<std::int16_t>(x)
                         : std::int16_t{WorkingRecord::kNotFound};
    }
  }
  WorkingRecord from;
  std::array<Output, kLetterCount> forms{};
  std::array<Start, 256> start{};
  std::array<std::int16_t, 256> second{};
};

// How each pivot byte is written in one target encoding.
struct Expansion {
  Expansion(int pivot_index, int to_index) {
    const WorkingRecord pivot(pivot_index);
    const WorkingRecord to(to_index);
    for (int c = 0; c < 256; ++c)
      bytes[static_cast<std::size_t>(c)] = ExpansionOf(static_cast<std::uint8_t>(c), pivot, to);
  }
  std::array<Output, 256> bytes{};
};

// The tables of one pair, built by the first caller that needs them (from any thread).
template <typename Table> const Table& CachedTable(int from_index, int to_index) {
  constexpr std::size_t kPairs = std::size_t{kEncodingCount} * kEncodingCount;
  static std::array<std::once_flag, kPairs> built;
  static std::array<std::unique_ptr<const Table>, kPairs> tables;
  const auto pair =
      static_cast<std::size_t>(from_index) * kEncodingCount + static_cast<std::size_t>(to_index);
  std::call_once(built[pair],
                 [&] { tables[pair] = std::make_unique<const Table>(from_index, to_index); });
  return *tables[pair];
}

} // namespace

bool ConvertCharset(std::string_view source, std::string& target, int from_index, int to_index) {
  target.clear();
  if (WorkingRecord::Stored(from_index) == nullptr || WorkingRecord::Stored(to_index) == nullptr)
    return false;
  if (from_index == to_index) {
    target.assign(source);
    return true;
  }
  const Conversion& tables = CachedTable<Conversion>(from_index, to_index);
  const WorkingRecord& from = tables.from;
  const auto form = [&](int letter) -> const Output& {
    return tables.forms[static_cast<std::size_t>(letter)];
  };
  const auto& start = tables.start;
  const auto& second = tables.second;
  ByteWriter out(target, source.size());

  const std::size_t n = source.size();
  const auto byte_at = [&](std::size_t p) { return static_cast<std::uint8_t>(source[p]); };
  const auto two_byte_after = [&](std::size_t p) {
    return p + 1 < n ? int{second[byte_at(p + 1)]} : WorkingRecord::kNotFound;
  };

  std::size_t p = 0;
  while (p < n) {
    const std::uint8_t c = byte_at(p);
    switch (start[c]) {
    case Start::kOther:
      out.Put(c);
      ++p;
      continue;
    case Start::kAsciiVowel: {
      const int mark = two_byte_after(p);
      const int vowel =
          mark == WorkingRecord::kNotFound ? WorkingRecord::kNotFound : from.FindCode(c);
      const int letter = vowel == WorkingRecord::kNotFound || vowel == kIndexDStroke ||
                                 vowel == kIndexDStroke + kLowerCaseCount
                             ? kLetterCount
                             : LetterOfVowelAndMark(vowel, mark);
      if (letter >= kLetterCount) {
        // No mark after the vowel, or (for Y with the mark of a modified vowel â ê ô) a pair
        // that would point past the last letter: the vowel stands alone.
        out.Put(c);
        ++p;
        continue;
      }
      Emit(form(letter), out);
      p += 2;
      continue;
    }
    case Start::kLetter:
      break;
    }
    const int x = from.FindLetter(c);
    int letter = x;
    std::size_t step = 1;
    if (IsToneableBase(x)) {
      const int y = two_byte_after(p);
      if (y != WorkingRecord::kNotFound) {
        const int tone = y % kLowerCaseCount % kLettersPerGroup;
        if (tone != 0 && y <= x + 5) {
          letter = x + tone;
          step = 2;
        }
      }
    }
    Emit(form(letter), out);
    p += step;
  }
  return true;
}

std::size_t ExpandFromPivot(std::string_view source, std::string& target, int to_index) {
  if (WorkingRecord::Stored(to_index) == nullptr) return 0;
  target.clear();
  if (to_index == kEncodingPivot) {
    target.assign(source);
    return target.size();
  }
  const auto& expansion = CachedTable<Expansion>(kEncodingPivot, to_index).bytes;
  {
    ByteWriter out(target, source.size());
    for (const char ch : source)
      Emit(expansion[static_cast<std::uint8_t>(ch)], out);
  }
  return target.size();
}

} // namespace vntts
