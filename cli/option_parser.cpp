// SPDX-License-Identifier: MIT
#include "option_parser.h"

#include <getopt.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "suggestion.h"

namespace vntts::cli {
namespace {

constexpr int kHelpId = -1;
// getopt_long reports a long option by this base plus its index in the table.
constexpr int kLongBase = 1000;

const OptionSpec kHelp{kHelpId, 'h', "help", nullptr, "show this help and exit"};

std::vector<OptionSpec> WithHelp(std::span<const OptionSpec> options) {
  std::vector<OptionSpec> all(options.begin(), options.end());
  all.push_back(kHelp);
  return all;
}

std::string DisplayName(const OptionSpec& o) {
  return o.long_name ? std::string("--") + o.long_name : std::string("-") + o.short_name;
}

std::string UnknownOptionMessage(std::string_view written, std::span<const OptionSpec> options) {
  std::string message = "unknown option '" + std::string(written) + "'";
  if (!written.starts_with("--")) return message;
  std::vector<std::string_view> names;
  for (const auto& o : options)
    if (o.long_name) names.emplace_back(o.long_name);
  const std::string_view typed = written.substr(2, written.find('=') - 2);
  if (const auto best = ClosestName(typed, names); !best.empty())
    message += "; did you mean '--" + std::string(best) + "'?";
  return message;
}

} // namespace

int UsageError(const CommandSyntax& syntax, const std::string& message) {
  std::fprintf(stderr, "vntts: %s\nTry 'vntts %s --help'.\n", message.c_str(), syntax.name);
  return kExitUsage;
}

void PrintHelp(std::FILE* out, const CommandSyntax& syntax, std::span<const OptionSpec> options) {
  std::fprintf(out, "usage: vntts %s [OPTION...] %s\n%s\n\n", syntax.name, syntax.operands,
               syntax.summary);
  for (const auto& o : WithHelp(options)) {
    std::string left = o.short_name ? std::string("-") + o.short_name : "  ";
    if (o.long_name) left += std::string(o.short_name ? ", --" : "  --") + o.long_name;
    if (o.value_name) left += std::string(o.long_name ? "=" : " ") + o.value_name;
    std::fprintf(out, "  %-24s %s\n", left.c_str(), o.help);
  }
}

ParsedArgs ParseArgs(const CommandSyntax& syntax, std::span<const OptionSpec> table, Args args) {
  const std::vector<OptionSpec> options = WithHelp(table);
  std::string short_options = ":"; // ':' reports a missing value apart from an unknown option
  std::vector<option> long_options;
  for (std::size_t i = 0; i < options.size(); ++i) {
    const OptionSpec& o = options[i];
    const int has_arg = o.value_name ? required_argument : no_argument;
    if (o.short_name) short_options += std::string(1, o.short_name) + (o.value_name ? ":" : "");
    if (o.long_name)
      long_options.push_back({o.long_name, has_arg, nullptr, kLongBase + static_cast<int>(i)});
  }
  long_options.push_back({nullptr, 0, nullptr, 0});

  std::vector<std::string> storage;
  storage.reserve(args.size() + 1);
  storage.push_back(std::string("vntts ") + syntax.name);
  for (const auto a : args)
    storage.emplace_back(a);
  std::vector<char*> argv;
  for (auto& s : storage)
    argv.push_back(s.data());
  argv.push_back(nullptr);

  ParsedArgs parsed;
  bool help = false;
  opterr = 0;
  optind = 0; // glibc: start afresh, as the parser may run more than once in a process
  const int argc = static_cast<int>(storage.size());
  for (;;) {
    int long_index = -1;
    const int c =
        getopt_long(argc, argv.data(), short_options.c_str(), long_options.data(), &long_index);
    if (c == -1) break;
    const OptionSpec* spec = nullptr;
    if (c >= kLongBase) {
      spec = &options[static_cast<std::size_t>(c - kLongBase)];
    } else if (c != '?' && c != ':') {
      for (const auto& o : options)
        if (o.short_name == c) spec = &o;
    }
    if (spec) {
      if (spec->id == kHelpId) {
        help = true;
        continue;
      }
      const std::string name =
          c >= kLongBase ? DisplayName(*spec) : std::string("-") + spec->short_name;
      parsed.options.push_back({spec->id, optarg ? optarg : "", name});
      continue;
    }
    // A usage error: name the option as the user wrote it.
    std::string written;
    if (optopt >= kLongBase)
      written = DisplayName(options[static_cast<std::size_t>(optopt - kLongBase)]);
    else if (optopt > 0)
      written = std::string("-") + static_cast<char>(optopt);
    else
      written = argv[static_cast<std::size_t>(optind - 1)];
    std::string message;
    if (c == ':')
      message = written + " needs a value";
    else if (optopt >= kLongBase)
      message = written + " takes no value";
    else
      message = UnknownOptionMessage(written, options);
    parsed.exit_status = UsageError(syntax, message);
    return parsed;
  }
  for (int i = optind; i < argc; ++i)
    parsed.operands.emplace_back(argv[static_cast<std::size_t>(i)]);
  if (help) {
    PrintHelp(stdout, syntax, table);
    parsed.exit_status = kExitDone;
  }
  return parsed;
}

std::optional<long> NumberValue(const CommandSyntax& syntax, const ParsedOption& option,
                                long minimum, long maximum) {
  const char* text = option.value.c_str();
  char* end = nullptr;
  errno = 0;
  const long value = std::strtol(text, &end, 10);
  if (*text == '\0' || *end != '\0' || errno != 0 || value < minimum || value > maximum) {
    UsageError(syntax, option.name + " wants a whole number from " + std::to_string(minimum) +
                           " to " + std::to_string(maximum) + ", not '" + option.value + "'");
    return std::nullopt;
  }
  return value;
}

} // namespace vntts::cli
