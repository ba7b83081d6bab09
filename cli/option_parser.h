// SPDX-License-Identifier: MIT
#pragma once
// The one option parser of every subcommand: getopt_long underneath, so that `--rate=100`,
// `--rate 100`, `-r100`, bundled short options (`-qx`), unambiguous abbreviations of long
// names and `--` behave as in other Linux commands. Each subcommand describes its options in a
// table; the same table prints `--help`, so the help cannot drift from what is accepted.
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "command.h"

namespace vntts::cli {

struct OptionSpec {
  int id;                 // what the subcommand matches on: its short letter, or 256 and up
  char short_name;        // 0 when the option has only a long name
  const char* long_name;  // null when the option has only a short name
  const char* value_name; // null for a flag; else the placeholder shown in the help ("FILE")
  const char* help;       // one line
};

struct CommandSyntax {
  const char* name;     // "say"
  const char* operands; // shown after the options in the usage line: "[TEXT...]"
  const char* summary;  // one sentence for the help
};

struct ParsedOption {
  int id;
  std::string value;
  std::string name; // as a user would write it, for messages: "--rate" or "-r"
};

struct ParsedArgs {
  std::vector<ParsedOption> options;
  std::vector<std::string> operands;
  // Set when the subcommand must end at once: kExitDone after --help was printed, kExitUsage
  // after a usage error was reported.
  std::optional<int> exit_status;
};

// Parses args against the table; -h/--help is added to every table. Unknown options and
// missing values are reported on stderr, with the closest known option as a suggestion.
// --help wins over every other option but not over a usage error, so that
// `vntts say --rate=1 --help` proves that --rate exists.
ParsedArgs ParseArgs(const CommandSyntax& syntax, std::span<const OptionSpec> options, Args args);

void PrintHelp(std::FILE* out, const CommandSyntax& syntax, std::span<const OptionSpec> options);

// Prints "vntts: MESSAGE" and a pointer to `vntts NAME --help`; returns kExitUsage.
int UsageError(const CommandSyntax& syntax, const std::string& message);

// The value of an option as a whole number in [minimum, maximum]; a usage message otherwise.
std::optional<long> NumberValue(const CommandSyntax& syntax, const ParsedOption& option,
                                long minimum, long maximum);

} // namespace vntts::cli
