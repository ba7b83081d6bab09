// SPDX-License-Identifier: MIT
// `vntts words [--encoding NAME] [--marks] [--no-stores] [--data DIR] [TEXT...]`: the words the
// engine will speak for a text, one sentence per line, in lower case and UTF-8.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "option_parser.h"
#include "spoken_words.h"
#include "text/charset/charsets.h"

namespace vntts::cli {

namespace {

constexpr CommandSyntax kSyntax{
    "words", "[TEXT...]",
    "Prints the words the engine speaks for TEXT (or standard input), one sentence per line."};

enum : int { kEncoding = 256, kMarks, kNoStores, kData };

constexpr OptionSpec kOptions[] = {
    {kEncoding, 0, "encoding", "ENC",
     "form of the input: utf8 (default), vni, cp1258, or a charset index 0..18"},
    {kMarks, 0, "marks", nullptr, "follow each word with '/' and the class of its piece"},
    {kData, 0, "data", "DIR", "read the word stores and voice of DIR (default: the data folder)"},
    {kNoStores, 0, "no-stores", nullptr, "use no word stores and no voice"},
};

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

int Words(Args args);

} // namespace

// No exception leaves the command: a text too large for memory is an error message.
int RunWords(Args args) {
  try {
    return Words(args);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "vntts: words: out of memory\n");
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vntts: words: %s\n", e.what());
  }
  return kExitFailed;
}

namespace {

int Words(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::string encoding = "utf8";
  bool marks = false;
  bool stores = true;
  std::optional<std::filesystem::path> data_dir;
  for (const auto& o : parsed.options) {
    if (o.id == kEncoding) encoding = o.value;
    if (o.id == kMarks) marks = true;
    if (o.id == kNoStores) stores = false;
    if (o.id == kData) data_dir = o.value;
  }
  std::string text;
  for (const auto& operand : parsed.operands)
    text += (text.empty() ? "" : " ") + operand;
  if (parsed.operands.empty()) {
    char buffer[1 << 16];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
      text.append(buffer, got);
    if (std::ferror(stdin)) {
      std::fprintf(stderr, "vntts: cannot read standard input\n");
      return kExitFailed;
    }
  }

  const auto internal = ToInternal(text, encoding);
  if (!internal) return UsageError(kSyntax, "unknown encoding '" + encoding + "'");

  StderrMessages messages;
  std::optional<std::filesystem::path> folder;
  if (stores) folder = data_dir ? *data_dir : DataFolder::Locate().path();
  const SpokenWords words(folder, messages);
  if (!words.Write(*internal, marks, stdout)) {
    std::fprintf(stderr, "vntts: cannot write standard output\n");
    return kExitFailed;
  }
  return kExitDone;
}

} // namespace

} // namespace vntts::cli
