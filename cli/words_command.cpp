// `vntts words [--encoding NAME] [--marks] [--no-stores] [--data DIR] [TEXT...]`: the words the
// engine will speak for a text, one sentence per line, in lower case and UTF-8.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/archive_units.h"
#include "engine/word_renderer.h"
#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "text/charset/charsets.h"
#include "text/sentence_parser.h"

namespace vntts::cli {

namespace {

constexpr std::string_view kUsage =
    "usage: vntts words [--encoding utf8|vni|cp1258|INDEX] [--marks] [--no-stores]\n"
    "                   [--data DIR] [TEXT...]\n"
    "Prints the words the engine speaks for TEXT (or standard input), one sentence per line.\n"
    "  --encoding  form of the input: utf8 (default), vni (internal VNI-Windows bytes),\n"
    "              cp1258 (code page 1258 with tone bytes), or a charset index 0..18\n"
    "  --marks     follow each word with '/' and the class of the piece it was read from\n"
    "  --data DIR  read the abbreviation definitions and auto-correct table of DIR\n"
    "              (default: the engine's data folder)\n"
    "  --no-stores ignore the voice and the user's definitions and auto-correct table\n";

// The input bytes in internal text, or nothing for an unknown encoding name.
std::optional<std::string> ToInternal(std::string_view bytes, std::string_view encoding) {
  if (encoding == "utf8" || encoding == "utf-8") return Utf8ToInternal(bytes);
  if (encoding == "vni" || encoding == "internal" || encoding == "3") return std::string(bytes);
  if (encoding == "cp1258" || encoding == "windows-1258" || encoding == "17")
    return AsciiToInternal(bytes);
  char* end = nullptr;
  const std::string name(encoding);
  const long index = std::strtol(name.c_str(), &end, 10);
  if (name.empty() || *end != '\0' || index < 0 || index > 18) return std::nullopt;
  return Utf8ToInternal(LegacyToUtf8(bytes, static_cast<int>(index)));
}

constexpr std::size_t kBlockBytes = 1 << 18;

std::string MarkName(int mark) {
  if (mark >= 0x40 && mark <= 0x50) return std::string(1, static_cast<char>(mark));
  return "-";
}

} // namespace

int run_words(Args args) {
  std::string encoding = "utf8";
  bool marks = false;
  bool stores = true;
  std::optional<std::filesystem::path> dataDir;
  std::string text;
  bool haveText = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    if (a == "--help" || a == "-h") {
      std::fputs(kUsage.data(), stdout);
      return 0;
    }
    if (a == "--encoding" || a == "--data") {
      if (i + 1 == args.size()) {
        std::fprintf(stderr, "vntts words: %.*s needs a value\n%s", static_cast<int>(a.size()),
                     a.data(), kUsage.data());
        return 2;
      }
      if (a == "--encoding")
        encoding = args[++i];
      else
        dataDir = std::filesystem::path(std::string(args[++i]));
      continue;
    }
    if (a == "--marks") {
      marks = true;
      continue;
    }
    if (a == "--no-stores") {
      stores = false;
      continue;
    }
    if (a.starts_with("--")) {
      std::fprintf(stderr, "vntts words: unknown option %.*s\n%s", static_cast<int>(a.size()),
                   a.data(), kUsage.data());
      return 2;
    }
    if (haveText) text += ' ';
    text += a;
    haveText = true;
  }
  if (!haveText) {
    char buffer[1 << 16];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
      text.append(buffer, got);
    if (std::ferror(stdin)) {
      std::fprintf(stderr, "vntts words: cannot read standard input\n");
      return 1;
    }
  }

  const auto internal = ToInternal(text, encoding);
  if (!internal) {
    std::fprintf(stderr, "vntts words: unknown encoding '%s'\n%s", encoding.c_str(), kUsage.data());
    return 2;
  }

  DefinitionStore definitions;
  AutoCorrectTable autoCorrect;
  FrontEndStores frontEnd;
  // The voice decides, as it does when speaking, whether a word is said or spelled (a word
  // the archive lacks may still be said through a spelling variant or a two-syllable split).
  StderrMessages archiveMessages;
  std::optional<ArchiveUnits> units;
  std::optional<WordRenderer> renderer;
  if (stores) {
    std::optional<DataFolder> folder;
    if (dataDir)
      folder.emplace(*dataDir);
    else
      folder.emplace(DataFolder::Locate());
    std::error_code ec;
    if (std::filesystem::is_directory(folder->path() / "Define", ec) &&
        definitions.LoadFolder(folder->path() / "Define").ok)
      frontEnd.definitions = &definitions;
    if (std::filesystem::is_regular_file(folder->path() / "AutoCrt.crt", ec) &&
        autoCorrect.Load(folder->path() / "AutoCrt.crt").ok)
      frontEnd.autoCorrect = &autoCorrect;
    if (std::filesystem::is_regular_file(folder->path() / "main_dic.dat", ec)) {
      units.emplace(folder->FilePath("main_dic.dat"), archiveMessages);
      renderer.emplace(*units);
      frontEnd.speakable = &*renderer;
    }
  }

  // Lines are gathered in internal text and converted in large blocks by one stream, which
  // converts each distinct word once for the whole output.
  SentenceParser parser(*internal, frontEnd, PhraseTexts::Skip);
  Sentence sentence;
  std::string block;
  InternalToUtf8Stream toUtf8;
  auto flush = [&] {
    const std::string utf8 = toUtf8.Convert(block);
    std::fwrite(utf8.data(), 1, utf8.size(), stdout);
    block.clear();
  };
  while (parser.Next(sentence)) {
    if (sentence.words.empty()) continue;
    bool first = true;
    for (const SpokenWord& w : sentence.words) {
      if (!first) block += ' ';
      first = false;
      block += w.word;
      if (marks) {
        block += '/';
        block += MarkName(w.mark);
      }
    }
    block += '\n';
    if (block.size() >= kBlockBytes) flush();
  }
  flush();
  return std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace vntts::cli
