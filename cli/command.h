#pragma once
// Each subcommand of `vntts` lives in its own file as `int run_<name>(args)`; args excludes
// the program and subcommand names. Exit status: 0 success, 1 failure, 2 usage error.
#include <span>
#include <string_view>

namespace vntts::cli {

using Args = std::span<const std::string_view>;

int run_convert(Args args);
int run_words(Args args);
int run_decode(Args args);
int run_build_voice(Args args);
int run_play(Args args);
int run_record(Args args);
int run_say(Args args);

} // namespace vntts::cli
