// SPDX-License-Identifier: MIT
// Builds the default word stores from their readable UTF-8 sources:
//   vntts_make_word_stores crt    autocorrect.txt  AutoCrt.crt
//   vntts_make_word_stores dic    phrases.txt      data.dic
//   vntts_make_word_stores define define/x.txt     Define/x.def
// Lines starting with '#' are comments. Auto-correct and definition lines are "a<TAB>b".
// The phrase source is free text cut like the Phrase Express tool cuts it (line breaks,
// commas, full stops); only two-word pieces are kept.
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "store/file_io.h"
#include "store/phrase_store.h"
#include "text/char_classes.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

struct SourceLine {
  std::size_t number;
  std::string text;
};

std::vector<SourceLine> ReadSourceLines(const std::string& text) {
  std::vector<SourceLine> lines;
  std::size_t begin = 0;
  std::size_t number = 0;
  while (begin < text.size()) {
    std::size_t end = text.find('\n', begin);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(begin, end - begin);
    ++number;
    begin = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line.front() == '#') continue;
    lines.push_back({number, std::move(line)});
  }
  return lines;
}

// The first letter upper-cased, with its mark byte: "ấy" (61 E1 79) becomes "Ấy" (41 C1 79).
std::string Capitalized(std::string text) {
  const auto upper = [](char& c) {
    const auto b = static_cast<unsigned char>(c);
    if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7))
      c = static_cast<char>(b - 0x20);
  };
  static constexpr std::string_view kMarkBytes =
      "\xF9\xF8\xFB\xF5\xEF\xE2\xE1\xE0\xE5\xE3\xE4\xEA\xE9\xE8\xFA\xFC\xEB";
  if (text.empty()) return text;
  upper(text[0]);
  if (text.size() > 1 && kMarkBytes.find(text[1]) != std::string_view::npos) upper(text[1]);
  return text;
}

bool SplitAtTab(const SourceLine& line, std::string& left, std::string& right, const char* source) {
  const auto tab = line.text.find('\t');
  if (tab == std::string::npos || tab == 0) {
    std::fprintf(stderr, "%s:%zu: expected \"text<TAB>text\"\n", source, line.number);
    return false;
  }
  left = Utf8ToInternal(line.text.substr(0, tab));
  right = Utf8ToInternal(line.text.substr(tab + 1));
  return true;
}

// Every pair as written, then its capitalised form for a token at the start of a sentence.
int BuildAutoCorrect(const std::string& text, const char* source, const char* output) {
  std::vector<AutoCorrectPair> pairs;
  std::set<std::string> seen;
  for (const auto& line : ReadSourceLines(text)) {
    AutoCorrectPair pair;
    if (!SplitAtTab(line, pair.replace, pair.with, source)) return 1;
    AutoCorrectPair capital{Capitalized(pair.replace), Capitalized(pair.with)};
    for (auto* p : {&pair, &capital})
      if (seen.insert(p->replace).second) pairs.push_back(*p);
  }
  const AutoCorrectTable table(std::move(pairs));
  if (auto saved = table.Save(output); !saved) {
    std::fprintf(stderr, "%s\n", saved.error.c_str());
    return 1;
  }
  std::printf("%s: %zu auto-correct pairs\n", output, table.size());
  return 0;
}

// The phrases as written and in lower case, so that a name (Hà Nội) is found both ways.
int BuildPhrases(const std::string& text, const char* output) {
  std::string body;
  for (const auto& line : ReadSourceLines(text))
    body.append(line.text).append("\n");
  std::vector<std::string> phrases;
  for (const auto& phrase : ExtractTwoWordPhrases(Utf8ToInternal(body))) {
    phrases.push_back(phrase);
    phrases.push_back(LowerInternal(phrase));
  }
  if (auto saved = PhraseStore::Save(output, phrases); !saved) {
    std::fprintf(stderr, "%s\n", saved.error.c_str());
    return 1;
  }
  PhraseStore check;
  if (auto opened = check.Open(output); !opened) {
    std::fprintf(stderr, "%s\n", opened.error.c_str());
    return 1;
  }
  std::printf("%s: %zu phrases\n", output, check.size());
  return 0;
}

int BuildDefinitions(const std::string& text, const char* source, const char* output) {
  std::vector<Definition> definitions;
  for (const auto& line : ReadSourceLines(text)) {
    Definition d;
    if (!SplitAtTab(line, d.short_form, d.expansion, source)) return 1;
    definitions.push_back(std::move(d));
  }
  if (auto saved = ReplaceFileAtomically(output, FormatDefinitionLines(definitions)); !saved) {
    std::fprintf(stderr, "%s\n", saved.error.c_str());
    return 1;
  }
  std::printf("%s: %zu definitions\n", output, definitions.size());
  return 0;
}

} // namespace
} // namespace vntts

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s crt|dic|define SOURCE.txt OUTPUT\n", argv[0]);
    return 2;
  }
  const std::string kind = argv[1];
  std::string text;
  if (auto read = vntts::ReadWholeFile(argv[2], text); !read) {
    std::fprintf(stderr, "%s\n", read.error.c_str());
    return 1;
  }
  if (kind == "crt") return vntts::BuildAutoCorrect(text, argv[2], argv[3]);
  if (kind == "dic") return vntts::BuildPhrases(text, argv[3]);
  if (kind == "define") return vntts::BuildDefinitions(text, argv[2], argv[3]);
  std::fprintf(stderr, "unknown store kind %s\n", argv[1]);
  return 2;
}
