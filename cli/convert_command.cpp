// SPDX-License-Identifier: MIT
// vntts convert --from ENC --to ENC: stdin to stdout between UTF-8, UTF-16 and the 19
// Vietnamese legacy encodings.
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "option_parser.h"
#include "text/charset/charset_record.h"
#include "text/charset/text_conversion.h"
#include "text/charset/working_record.h"

namespace vntts::cli {

namespace {

constexpr CommandSyntax kSyntax{
    "convert", "< INPUT > OUTPUT",
    "Converts text between UTF-8, UTF-16 and the 19 Vietnamese encodings. ENC is utf-8, utf-16,\n"
    "or one of the encodings listed by --list, by index or name (case and blanks do not matter)."};

enum : int { kFrom = 256, kTo, kList };

constexpr OptionSpec kOptions[] = {
    {kFrom, 0, "from", "ENC", "the encoding of the input"},
    {kTo, 0, "to", "ENC", "the encoding of the output"},
    {kList, 0, "list", nullptr, "list the encodings and exit"},
};

void PrintEncodings(std::FILE* out) {
  for (int i = 0; i < kEncodingCount; ++i)
    std::fprintf(out, "  %2d  %s\n", i, WorkingRecord::Stored(i)->name);
}

bool ReadAll(std::FILE* in, std::string& out) {
  char buffer[1 << 16];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, in)) > 0)
    out.append(buffer, n);
  return std::ferror(in) == 0;
}

} // namespace

int RunConvert(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::optional<std::string> from_name, to_name;
  for (const auto& o : parsed.options) {
    if (o.id == kFrom) from_name = o.value;
    if (o.id == kTo) to_name = o.value;
    if (o.id == kList) {
      PrintEncodings(stdout);
      return kExitDone;
    }
  }
  if (!parsed.operands.empty())
    return UsageError(kSyntax, "unexpected argument '" + parsed.operands.front() +
                                   "'; the text comes from standard input");
  if (!from_name || !to_name) return UsageError(kSyntax, "both --from and --to are needed");
  const auto from = FindTextEncoding(*from_name);
  const auto to = FindTextEncoding(*to_name);
  for (const auto& [name, found] : {std::pair{*from_name, from}, std::pair{*to_name, to}}) {
    if (!found) return UsageError(kSyntax, "unknown encoding '" + name + "' (see --list)");
  }

  std::string input;
  if (!ReadAll(stdin, input)) {
    std::fprintf(stderr, "vntts: cannot read the standard input\n");
    return kExitFailed;
  }
  const ConvertedText result = ConvertText(input, *from, *to);
  if (std::fwrite(result.bytes.data(), 1, result.bytes.size(), stdout) != result.bytes.size() ||
      std::fflush(stdout) != 0) {
    std::fprintf(stderr, "vntts: cannot write the standard output\n");
    return kExitFailed;
  }
  int status = 0;
  if (result.invalid > 0) {
    std::fprintf(stderr, "vntts: the input is not valid %s: %zu broken sequence(s) replaced\n",
                 TextEncodingName(*from).c_str(), result.invalid);
    status = 1;
  }
  if (result.unrepresentable > 0) {
    std::fprintf(stderr, "vntts: %zu character(s) have no place in %s and were replaced by '?'\n",
                 result.unrepresentable, TextEncodingName(*to).c_str());
    status = 1;
  }
  return status;
}

} // namespace vntts::cli
