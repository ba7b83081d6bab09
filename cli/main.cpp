// SPDX-License-Identifier: MIT
// vntts: the command. The first argument names a subcommand; anything else is text to speak,
// so `vntts xin chào` and `vntts -w out.wav xin chào` are `vntts say ...`.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "command.h"
#include "suggestion.h"

#ifndef VNTTS_VERSION
#define VNTTS_VERSION "unknown"
#endif

namespace {

using vntts::cli::Args;

struct Command {
  std::string_view name;
  int (*run)(Args);
  std::string_view summary;
};

constexpr Command kCommands[] = {
    {"say", vntts::cli::RunSay, "speak Vietnamese text aloud or into a WAV file"},
    {"words", vntts::cli::RunWords, "print the words the engine will speak for a text"},
    {"convert", vntts::cli::RunConvert, "convert text between Vietnamese encodings"},
    {"decode", vntts::cli::RunDecode, "decode an MPEG audio file to PCM or WAV"},
    {"build-voice", vntts::cli::RunBuildVoice, "build a syllable archive from MP3 files"},
    {"play", vntts::cli::RunPlay, "play a WAV file"},
    {"record", vntts::cli::RunRecord, "record from the default input into a WAV file"},
    {"gui", vntts::cli::RunGui, "open the Speaker window (gui record: the Record window)"},
};

void PrintUsage(std::FILE* out) {
  std::fprintf(out, "usage: vntts COMMAND [OPTION...] [ARG...]\n"
                    "       vntts [SAY-OPTION...] TEXT...   (speaks TEXT, as vntts say)\n"
                    "       vntts --version\n\ncommands:\n");
  for (const auto& c : kCommands)
    std::fprintf(out, "  %-12.*s %.*s\n", static_cast<int>(c.name.size()), c.name.data(),
                 static_cast<int>(c.summary.size()), c.summary.data());
  std::fprintf(out,
               "\n'vntts COMMAND --help' shows the options of a command; man vntts has all.\n");
}

// A word that cannot be Vietnamese text (plain lower-case ASCII, with a letter Vietnamese does
// not use or a hyphen) or that is a command name with two letters swapped, and that lies within a
// slip of the fingers of a command name: `vntts sya`, `vntts word`. Such a word is refused rather
// than spoken. Unaccented Vietnamese such as "sau" or "hay" is close to "say" too, so a real
// syllable needs the swap to count.
std::string_view MistypedCommand(std::string_view word) {
  if (word.empty() || !std::all_of(word.begin(), word.end(),
                                   [](unsigned char c) { return std::islower(c) || c == '-'; }))
    return {};
  std::vector<std::string_view> names;
  for (const auto& c : kCommands)
    names.push_back(c.name);
  const std::string_view best = vntts::cli::ClosestName(word, names);
  if (best.empty()) return {};
  const bool foreign = word.find_first_of("fjwz-") != std::string_view::npos;
  std::string sorted_word(word), sorted_name(best);
  std::sort(sorted_word.begin(), sorted_word.end());
  std::sort(sorted_name.begin(), sorted_name.end());
  const bool swapped = sorted_word == sorted_name;
  const bool short_word = word.size() < 3; // "sa", "da" are words
  if (short_word || !(foreign || swapped || best.size() >= 5)) return {};
  return best;
}

} // namespace

int main(int argc, char** argv) {
  using namespace vntts::cli;
  const std::vector<std::string_view> all(argv + 1, argv + argc);
  if (all.empty()) {
    // A pipe with no arguments is text to speak; a person at a terminal gets the usage.
    if (::isatty(STDIN_FILENO) == 0) return RunSay({});
    PrintUsage(stderr);
    return kExitUsage;
  }
  const std::string_view first = all.front();
  if (first == "--help" || first == "-h" || first == "help") {
    PrintUsage(stdout);
    return kExitDone;
  }
  if (first == "--version" || first == "-V") {
    std::printf("vntts %s\n", VNTTS_VERSION);
    return kExitDone;
  }
  const Args rest = Args(all).subspan(1);
  for (const auto& c : kCommands)
    if (c.name == first) return c.run(rest);
  if (const auto best = MistypedCommand(first); !best.empty()) {
    std::fprintf(stderr,
                 "vntts: '%.*s' is not a command; did you mean '%.*s'?\n"
                 "To speak it as text: vntts say %.*s ...\n",
                 static_cast<int>(first.size()), first.data(), static_cast<int>(best.size()),
                 best.data(), static_cast<int>(first.size()), first.data());
    return kExitUsage;
  }
  return RunSay(all);
}
