// SPDX-License-Identifier: MIT
// vntts decode IN [-o OUT.wav]: decodes an MPEG audio file (Layer I, II or III, optionally in
// a RIFF wrapper) through the same decoder the voice uses. Without -o the samples go to
// stdout as raw interleaved signed 16-bit little-endian PCM; the format is printed on stderr.
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "audio/mpeg/unit_decoder.h"
#include "audio/wave_format.h"
#include "audio/wave_writing.h"
#include "command.h"
#include "core/messages.h"
#include "option_parser.h"

namespace vntts::cli {

namespace {

constexpr CommandSyntax kSyntax{
    "decode", "IN.mp3",
    "Decodes an MPEG audio file with the voice's decoder. Without -o, raw interleaved signed\n"
    "16-bit little-endian PCM goes to standard output and its format to standard error."};

constexpr OptionSpec kOptions[] = {
    {'o', 'o', "output", "OUT.wav", "write a WAV file instead"},
};

} // namespace

int RunDecode(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::string output;
  for (const auto& o : parsed.options)
    output = o.value;
  if (parsed.operands.size() != 1) return UsageError(kSyntax, "give one input file");
  const std::string& input = parsed.operands.front();

  UnitDecoder decoder;
  if (decoder.OpenFile(input) != 0) {
    std::fprintf(stderr, "vntts decode: cannot open %s\n", input.c_str());
    return kExitFailed;
  }
  const auto pcm = decoder.DecodeAll();
  const std::uint32_t bytes = decoder.decoded_length();
  const mpeg::PcmFormat& f = decoder.output_format();
  const std::uint32_t frames = f.block_align ? bytes / f.block_align : 0;
  std::fprintf(stderr, "%s: %u Hz, %u channel%s, 16-bit PCM, %u sample frames (%.3f s)\n",
               input.c_str(), f.samples_per_sec, f.channels, f.channels == 1 ? "" : "s", frames,
               f.samples_per_sec ? static_cast<double>(frames) / f.samples_per_sec : 0.0);
  if (f.samples_per_sec == 0 || bytes == 0) {
    std::fprintf(stderr, "vntts decode: no MPEG audio frames in %s\n", input.c_str());
    return kExitFailed;
  }

  if (!output.empty()) {
    const WaveFormat format = WaveFormat::pcm(f.channels, f.samples_per_sec, 16);
    StderrMessages messages;
    return write_wave_file(output, format, std::span<const std::uint8_t>(pcm.get(), bytes), {},
                           messages) == 0
               ? kExitDone
               : kExitFailed;
  }
  if (std::fwrite(pcm.get(), 1, bytes, stdout) != bytes || std::fflush(stdout) != 0) {
    std::fprintf(stderr, "vntts decode: cannot write the samples\n");
    return kExitFailed;
  }
  return kExitDone;
}

} // namespace vntts::cli
