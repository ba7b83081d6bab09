#include <cstdio>
#include <string_view>
#include <vector>

#include "command.h"

namespace {

struct Command {
  std::string_view name;
  int (*run)(vntts::cli::Args);
  std::string_view summary;
};

constexpr Command kCommands[] = {
    {"say", vntts::cli::run_say, "speak Vietnamese text aloud or into a WAV file"},
    {"words", vntts::cli::run_words, "print the words the engine will speak for a text"},
    {"convert", vntts::cli::run_convert, "convert text between Vietnamese encodings"},
    {"decode", vntts::cli::run_decode, "decode an MPEG audio file to PCM or WAV"},
    {"build-voice", vntts::cli::run_build_voice, "build a syllable archive from MP3 files"},
    {"play", vntts::cli::run_play, "play a WAV file"},
    {"record", vntts::cli::run_record, "record from the default input into a WAV file"},
};

void print_usage(std::FILE* out) {
  std::fprintf(out, "usage: vntts COMMAND [ARGS...]\n       vntts TEXT...   (speaks TEXT, as vntts "
                    "say)\n\ncommands:\n");
  for (const auto& c : kCommands)
    std::fprintf(out, "  %-12.*s %.*s\n", static_cast<int>(c.name.size()), c.name.data(),
                 static_cast<int>(c.summary.size()), c.summary.data());
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    print_usage(stderr);
    return 2;
  }
  const std::string_view name = argv[1];
  if (name == "--help" || name == "-h" || name == "help") {
    print_usage(stdout);
    return 0;
  }
  std::vector<std::string_view> args(argv + 2, argv + argc);
  for (const auto& c : kCommands)
    if (c.name == name) return c.run(args);
  // Anything that is not a command is text to speak: `vntts xin chào` is `vntts say xin chào`.
  std::vector<std::string_view> say_args(argv + 1, argv + argc);
  return vntts::cli::run_say(say_args);
}
