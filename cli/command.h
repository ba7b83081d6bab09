// SPDX-License-Identifier: MIT
#pragma once
// Each subcommand of `vntts` lives in its own file as `int Run<Name>(args)`; args excludes the
// program and subcommand names. Every subcommand parses its arguments with ParseArgs
// (option_parser.h) and ends with one of the three exit statuses below.
#include <span>
#include <string_view>

namespace vntts::cli {

using Args = std::span<const std::string_view>;

// The job was done.
inline constexpr int kExitDone = 0;
// The job was tried and failed (a file, the voice or the sound device); a message says why.
inline constexpr int kExitFailed = 1;
// The command line was wrong; nothing was tried.
inline constexpr int kExitUsage = 2;

int RunConvert(Args args);
int RunWords(Args args);
int RunDecode(Args args);
int RunBuildVoice(Args args);
int RunPlay(Args args);
int RunRecord(Args args);
int RunSay(Args args);
int RunGui(Args args);

} // namespace vntts::cli
