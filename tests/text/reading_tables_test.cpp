// SPDX-License-Identifier: MIT
// The readings as data: every tests/data/readings/*.tsv holds lines "input<TAB>expected", read
// here by one parametrised test, so that a reader of Vietnamese can add a case without C++.
//
// A file's comment header may say, on lines of their own:
//   # reader: walk      the sentence walk (the default); sentences in the expected text are
//                       separated by " | "
//   # reader: NAME      one reading function: group, integer, number, digits, phone, date,
//                       time, amount, range, measure, address, expression, over, symbol,
//                       spell, and syllable (có when the word has the shape of a syllable)
//   # stores: default   the walk uses the build's default Define folder and auto-correct table
//                       (the file is skipped when the build has not made them)
// In the input, \n stands for a line end, \t for a tab and \\ for a backslash.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "text/char_classes.h"
#include "text/number_reading.h"
#include "text/readings.h"
#include "text/syllable.h"
#include "text_test_util.h"

namespace vntts {
namespace {

namespace fs = std::filesystem;

const fs::path kTables = VNTTS_SOURCE_DIR "/tests/data/readings";
const fs::path kDataFolder = VNTTS_BINARY_DIR "/bin/index";

struct TableCase {
  std::string file; // without .tsv
  int line = 0;
  std::string reader = "walk";
  bool defaultStores = false;
  std::string input;
  std::string expected;
};

std::string Unescape(std::string_view s) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '\\' || i + 1 == s.size()) {
      out += s[i];
      continue;
    }
    const char c = s[++i];
    out += c == 'n' ? '\n' : c == 't' ? '\t' : c;
  }
  return out;
}

std::vector<TableCase> LoadTables() {
  std::vector<TableCase> cases;
  std::vector<fs::path> files;
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(kTables, ec))
    if (entry.path().extension() == ".tsv") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const auto& path : files) {
    std::ifstream in(path, std::ios::binary);
    TableCase header;
    header.file = path.stem().string();
    std::string line;
    while (std::getline(in, line)) {
      ++header.line;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (line.empty()) continue;
      if (line[0] == '#') {
        std::istringstream words(line.substr(1));
        std::string key, value;
        words >> key >> value;
        if (key == "reader:") header.reader = value;
        if (key == "stores:") header.defaultStores = value == "default";
        continue;
      }
      const auto tab = line.find('\t');
      TableCase c = header;
      c.input = Unescape(line.substr(0, tab));
      c.expected = tab == std::string::npos ? "" : line.substr(tab + 1);
      cases.push_back(std::move(c));
    }
  }
  return cases;
}

// The build's default stores, loaded once.
struct DefaultStores {
  DefinitionStore definitions;
  AutoCorrectTable autoCorrect;
  bool loaded = false;
  DefaultStores() {
    std::error_code ec;
    loaded = fs::is_directory(kDataFolder / "Define", ec) &&
             definitions.LoadFolder(kDataFolder / "Define").ok &&
             autoCorrect.Load(kDataFolder / "AutoCrt.crt").ok;
  }
};

std::string ReadWith(const std::string& reader, const std::string& internal) {
  using Reader = std::function<std::string(std::string_view)>;
  static const std::map<std::string, Reader> kReaders = {
      {"group", ReadGroup},
      {"integer", ReadInteger},
      {"number", ReadNumber},
      {"digits", ReadDigits},
      {"phone", ReadPhone},
      {"date", [](std::string_view t) { return ReadDate(t); }},
      {"time", ReadTime},
      {"amount", ReadAmount},
      {"range", ReadRange},
      {"measure", ReadMeasure},
      {"address", ReadAddress},
      {"expression", ReadExpression},
      {"over", ReadOver},
      {"symbol", [](std::string_view t) { return ReadSymbol(t.empty() ? '\0' : t[0]); }},
      {"spell", SpellWord},
  };
  if (reader == "syllable") return LooksLikeSyllable(LowerInternal(internal)) ? "có" : "không";
  const auto it = kReaders.find(reader);
  if (it == kReaders.end()) return "unknown reader " + reader;
  return testing::Words(it->second(internal));
}

void PrintTo(const TableCase& c, std::ostream* os) {
  *os << c.file << ".tsv:" << c.line;
}

class ReadingTable : public ::testing::TestWithParam<TableCase> {};

TEST_P(ReadingTable, ReadsAsExpected) {
  const TableCase& c = GetParam();
  if (c.reader != "walk") {
    const std::string got = ReadWith(c.reader, testing::In(c.input));
    EXPECT_TRUE(got == c.expected) << c.file << ".tsv:" << c.line << ": " << c.input
                                   << "\n   got: " << got << "\n  want: " << c.expected;
    return;
  }
  FrontEndStores stores;
  if (c.defaultStores) {
    static const DefaultStores defaults;
    if (!defaults.loaded) GTEST_SKIP() << "the build has not made the default stores";
    stores.definitions = &defaults.definitions;
    stores.auto_correct = &defaults.autoCorrect;
  }
  const std::string got = testing::Spoken(c.input, stores);
  EXPECT_TRUE(got == c.expected) << c.file << ".tsv:" << c.line << ": " << c.input
                                 << "\n   got: " << got << "\n  want: " << c.expected;
}

INSTANTIATE_TEST_SUITE_P(Tables, ReadingTable, ::testing::ValuesIn(LoadTables()),
                         [](const ::testing::TestParamInfo<TableCase>& param_info) {
                           std::string name =
                               param_info.param.file + "_" + std::to_string(param_info.param.line);
                           for (char& ch : name)
                             if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
                           return name;
                         });

TEST(ReadingTables, ThereAreTables) {
  EXPECT_GT(LoadTables().size(), 300U);
}

} // namespace
} // namespace vntts
