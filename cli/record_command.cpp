// vntts record: record from the default sound input into a WAV file.
//
//   vntts record -o FILE.wav [--seconds N] [--rate R] [--channels C] [--bits B]
//   --seconds N   length of the recording (default 5; fractions allowed, e.g. 0.5)
//   --rate R      11025, 22050 (default) or 44100 samples per second
//   --channels C  1 (default) or 2
//   --bits B      8 or 16 (default)
// VNTTS_AUDIO=pulse|alsa|null picks the backend.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "audio/wave_device.h"
#include "command.h"
#include "core/messages.h"

namespace vntts::cli {
namespace {

constexpr const char* kUsage =
    "usage: vntts record -o FILE.wav [--seconds N] [--rate 11025|22050|44100] [--channels 1|2]\n"
    "                    [--bits 8|16]\n";

std::optional<std::uint32_t> ParseCount(std::string_view s) {
  std::uint32_t v = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return v;
}

std::optional<double> ParseSeconds(std::string_view s) {
  const std::string text(s);
  char* end = nullptr;
  const double v = std::strtod(text.c_str(), &end);
  if (text.empty() || end != text.c_str() + text.size() || !std::isfinite(v) || v <= 0 ||
      v > 24 * 3600)
    return std::nullopt;
  return v;
}

} // namespace

int run_record(Args args) {
  std::string out;
  double seconds = 5;
  std::uint32_t rate = 22050, channels = 1, bits = 16;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    const bool has_value = i + 1 < args.size();
    if ((a == "-o" || a == "--output") && has_value) {
      out = args[++i];
    } else if (a == "--seconds" && has_value) {
      const auto v = ParseSeconds(args[++i]);
      if (!v) {
        std::fputs("vntts record: --seconds wants a positive number\n", stderr);
        return 2;
      }
      seconds = *v;
    } else if ((a == "--rate" || a == "--channels" || a == "--bits") && has_value) {
      const auto v = ParseCount(args[++i]);
      const bool ok = v && (a == "--rate"       ? (*v == 11025 || *v == 22050 || *v == 44100)
                            : a == "--channels" ? (*v == 1 || *v == 2)
                                                : (*v == 8 || *v == 16));
      if (!ok) {
        std::fprintf(stderr, "vntts record: bad value for %.*s\n", static_cast<int>(a.size()),
                     a.data());
        return 2;
      }
      (a == "--rate" ? rate : a == "--channels" ? channels : bits) = *v;
    } else if (a == "-h" || a == "--help") {
      std::fputs(kUsage, stdout);
      return 0;
    } else {
      std::fputs(kUsage, stderr);
      return 2;
    }
  }
  if (out.empty()) {
    std::fputs(kUsage, stderr);
    return 2;
  }

  StderrMessages messages;
  WaveDevice device(messages);
  device.SetFormat(WaveFormat::pcm(static_cast<std::uint16_t>(channels), rate,
                                   static_cast<std::uint16_t>(bits)));
  const auto ms = static_cast<std::uint32_t>(std::lround(seconds * 1000));
  return device.RecordToFile(out, ms) == device_result::kOk ? 0 : 1;
}

} // namespace vntts::cli
