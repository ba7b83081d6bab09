// vntts convert --from ENC --to ENC: stdin to stdout between UTF-8, UTF-16 and the 19
// Vietnamese legacy encodings.
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "command.h"
#include "text/charset/charset_record.h"
#include "text/charset/text_conversion.h"
#include "text/charset/working_record.h"

namespace vntts::cli {

namespace {

void PrintUsage(std::FILE* out) {
  std::fprintf(out, "usage: vntts convert --from ENC --to ENC  < input > output\n\n"
                    "ENC is utf-8, utf-16, or one of these encodings by index or name\n"
                    "(case and blanks do not matter):\n");
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

int run_convert(Args args) {
  std::optional<std::string_view> from_name;
  std::optional<std::string_view> to_name;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    if (a == "--help" || a == "-h") {
      PrintUsage(stdout);
      return 0;
    }
    std::optional<std::string_view>* slot = a == "--from" ? &from_name
                                            : a == "--to" ? &to_name
                                                          : nullptr;
    if (slot != nullptr && i + 1 < args.size()) {
      *slot = args[++i];
      continue;
    }
    if (a.rfind("--from=", 0) == 0) {
      from_name = a.substr(7);
      continue;
    }
    if (a.rfind("--to=", 0) == 0) {
      to_name = a.substr(5);
      continue;
    }
    std::fprintf(stderr, "vntts convert: unexpected argument '%.*s'\n", static_cast<int>(a.size()),
                 a.data());
    PrintUsage(stderr);
    return 2;
  }
  if (!from_name || !to_name) {
    std::fprintf(stderr, "vntts convert: both --from and --to are needed\n");
    PrintUsage(stderr);
    return 2;
  }
  const auto from = FindTextEncoding(*from_name);
  const auto to = FindTextEncoding(*to_name);
  for (const auto& [name, found] : {std::pair{*from_name, from}, std::pair{*to_name, to}}) {
    if (!found) {
      std::fprintf(stderr, "vntts convert: unknown encoding '%.*s'\n",
                   static_cast<int>(name.size()), name.data());
      PrintUsage(stderr);
      return 2;
    }
  }

  std::string input;
  if (!ReadAll(stdin, input)) {
    std::fprintf(stderr, "vntts convert: cannot read the standard input\n");
    return 1;
  }
  const ConvertedText result = ConvertText(input, *from, *to);
  if (std::fwrite(result.bytes.data(), 1, result.bytes.size(), stdout) != result.bytes.size() ||
      std::fflush(stdout) != 0) {
    std::fprintf(stderr, "vntts convert: cannot write the standard output\n");
    return 1;
  }
  int status = 0;
  if (result.invalid > 0) {
    std::fprintf(stderr,
                 "vntts convert: the input is not valid %s: %zu broken sequence(s) replaced\n",
                 TextEncodingName(*from).c_str(), result.invalid);
    status = 1;
  }
  if (result.unrepresentable > 0) {
    std::fprintf(stderr,
                 "vntts convert: %zu character(s) have no place in %s and were replaced by '?'\n",
                 result.unrepresentable, TextEncodingName(*to).c_str());
    status = 1;
  }
  return status;
}

} // namespace vntts::cli
