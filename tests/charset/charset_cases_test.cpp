// SPDX-License-Identifier: MIT
// The conversion cases of tests/data/charset_cases.tsv, one test per line.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "letter_sequences.h"
#include "support/tsv_table.h"
#include "text/charset/charsets.h"
#include "text/charset/text_conversion.h"
#include "text/charset/text_folding.h"
#include "text/charset/unicode_codecs.h"

namespace vntts {
namespace {

using testing::Hex;
using vntts::test::TsvRow;

std::string FromHex(const std::string& hex) {
  std::string out;
  std::istringstream in(hex == "-" ? "" : hex);
  for (unsigned v; in >> std::hex >> v;)
    out.push_back(static_cast<char>(v));
  return out;
}

std::u16string UnitsFromHex(const std::string& hex) {
  std::u16string out;
  std::istringstream in(hex == "-" ? "" : hex);
  for (unsigned v; in >> std::hex >> v;)
    out.push_back(static_cast<char16_t>(v));
  return out;
}

std::string HexUnits(const std::u16string& units) {
  std::ostringstream out;
  out << std::uppercase << std::hex;
  for (char16_t u : units) {
    if (out.tellp() > 0) out << ' ';
    out.width(4);
    out.fill('0');
    out << static_cast<unsigned>(u);
  }
  return out.str();
}

std::string Describe(const std::optional<TextEncoding>& e) {
  if (!e) return "none";
  if (e->kind == TextEncoding::Kind::kUtf8) return "utf8";
  if (e->kind == TextEncoding::Kind::kUtf16) return "utf16";
  return "legacy " + std::to_string(e->index);
}

// What the operation of a row gives, written as the table's expected column writes it.
std::string Outcome(const TsvRow& row) {
  const std::string& op = row[1];
  const std::string in = row[4] == "-" ? "" : row[4];
  if (op == "charset") {
    std::string out = "stale"; // a refusal must leave no output
    if (!ConvertCharset(FromHex(in), out, std::stoi(row[2]), std::stoi(row[3])))
      return out.empty() ? "fails" : "fails leaving output";
    return out.empty() ? "-" : Hex(out);
  }
  if (op == "text") {
    const ConvertedText text =
        ConvertText(FromHex(in), *FindTextEncoding(row[2]), *FindTextEncoding(row[3]));
    return Hex(text.bytes) + " / " + std::to_string(text.invalid) + " " +
           std::to_string(text.unrepresentable);
  }
  if (op == "cp1258") {
    const std::u16string units = UnitsFromHex(in);
    std::string out;
    const std::size_t written = Utf16ToCp1258(units, &out);
    if (written != out.size() || Utf16ToCp1258(units, nullptr) != written) return "bad count";
    return out.empty() ? "-" : Hex(out);
  }
  if (op == "utf8") {
    std::u16string out;
    DecodeUtf8(FromHex(in), out);
    return HexUnits(out);
  }
  if (op == "vietnamese") return ContainsVietnamese(UnitsFromHex(in)) ? "yes" : "no";
  if (op == "encoding") return Describe(FindTextEncoding(in));
  if (op == "internal" || op == "to_internal") {
    const std::string out = Utf8ToInternal(FromHex(in));
    if (op == "internal" && InternalToUtf8(out) != FromHex(in)) return "no round trip";
    return out.empty() ? "-" : Hex(out);
  }
  if (op == "from_internal") return Hex(InternalToUtf8(FromHex(in)));
  if (op == "ascii") return Hex(AsciiToInternal(FromHex(in)));
  std::u16string out;
  if (op == "fold") {
    const std::size_t unknown = FoldToLegacyRepertoire(UnitsFromHex(in), out);
    return (out.empty() ? "-" : HexUnits(out)) + " / " + std::to_string(unknown);
  }
  if (op == "compose" && ComposeUtf16(UnitsFromHex(in), out) == out.size())
    return out.empty() ? "-" : HexUnits(out);
  return "unknown operation " + op;
}

class CharsetCase : public ::testing::TestWithParam<TsvRow> {};

TEST_P(CharsetCase, GivesTheExpectedResult) {
  EXPECT_EQ(Outcome(GetParam()), GetParam()[5])
      << "tests/data/charset_cases.tsv:" << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(Table, CharsetCase,
                         ::testing::ValuesIn(vntts::test::ReadTsv("charset_cases")),
                         [](const auto& row) { return vntts::test::TsvName(row.param); });

} // namespace
} // namespace vntts
