// SPDX-License-Identifier: MIT
// vntts record: record from the default sound input into a WAV file (VNTTS_AUDIO=pulse|alsa
// picks the sound system).
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "audio/wave_device.h"
#include "command.h"
#include "command_messages.h"
#include "core/messages.h"
#include "option_parser.h"

namespace vntts::cli {
namespace {

constexpr CommandSyntax kSyntax{"record", "",
                                "Records from the default sound input into a WAV file."};

enum : int { kSeconds = 256, kRate, kChannels, kBits };

constexpr OptionSpec kOptions[] = {
    {'o', 'o', "output", "FILE.wav", "the file to write (required)"},
    {kSeconds, 0, "seconds", "N", "length of the recording (default 5; fractions allowed)"},
    {kRate, 0, "rate", "R", "11025, 22050 (default) or 44100 samples a second"},
    {kChannels, 0, "channels", "C", "1 (default) or 2"},
    {kBits, 0, "bits", "B", "8 or 16 (default)"},
};

std::optional<double> ParseSeconds(const std::string& text) {
  char* end = nullptr;
  const double v = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(v) || v <= 0 || v > 24 * 3600)
    return std::nullopt;
  return v;
}

} // namespace

int RunRecord(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::string out;
  double seconds = 5;
  std::uint32_t rate = 22050, channels = 1, bits = 16;
  for (const auto& o : parsed.options) {
    if (o.id == 'o') {
      out = o.value;
    } else if (o.id == kSeconds) {
      const auto v = ParseSeconds(o.value);
      if (!v) return UsageError(kSyntax, "--seconds wants a positive number up to 86400");
      seconds = *v;
    } else {
      const auto v = NumberValue(kSyntax, o, 1, 44100);
      if (!v) return kExitUsage;
      const bool ok = o.id == kRate       ? (*v == 11025 || *v == 22050 || *v == 44100)
                      : o.id == kChannels ? (*v == 1 || *v == 2)
                                          : (*v == 8 || *v == 16);
      if (!ok) return UsageError(kSyntax, "bad value for " + o.name + ": " + o.value);
      (o.id == kRate ? rate : o.id == kChannels ? channels : bits) = static_cast<std::uint32_t>(*v);
    }
  }
  if (!parsed.operands.empty())
    return UsageError(kSyntax, "unexpected argument '" + parsed.operands.front() + "'");
  if (out.empty()) return UsageError(kSyntax, "-o FILE.wav is needed");

  CommandMessages messages;
  WaveDevice device(messages);
  device.SetFormat(WaveFormat::Pcm(static_cast<std::uint16_t>(channels), rate,
                                   static_cast<std::uint16_t>(bits)));
  const auto ms = static_cast<std::uint32_t>(std::lround(seconds * 1000));
  return device.RecordToFile(out, ms) == device_result::kOk && !messages.Failed() ? kExitDone
                                                                                  : kExitFailed;
}

} // namespace vntts::cli
