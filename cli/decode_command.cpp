// SPDX-License-Identifier: MIT
// vntts decode IN [-o OUT.wav]: decodes an MPEG audio file (Layer I, II or III, optionally in
// a RIFF wrapper) through the same decoder the voice uses, streaming the samples out as they
// are decoded. Without -o they go to stdout as raw interleaved signed 16-bit little-endian PCM;
// the format and length are printed on stderr at the end.
#include <cstddef>
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
    std::fprintf(stderr, "vntts: cannot open %s\n", input.c_str());
    return kExitFailed;
  }
  const mpeg::PcmFormat& f = decoder.output_format();
  // The samples go out in pieces as they are decoded: a long file never sits whole in memory.
  bool written = true;
  if (f.samples_per_sec == 0) {
    written = false;
  } else if (!output.empty()) {
    StderrMessages messages;
    WaveFileWriter writer(messages);
    written = writer.Open(output, WaveFormat::Pcm(f.channels, f.samples_per_sec, 16)) &&
              decoder.DecodeTo([&](std::span<const std::int16_t> piece) {
                return writer.Write(
                    {reinterpret_cast<const std::uint8_t*>(piece.data()), piece.size_bytes()});
              }) &&
              writer.Finish();
    if (!written) return kExitFailed;
  } else {
    written = decoder.DecodeTo([](std::span<const std::int16_t> piece) {
      return std::fwrite(piece.data(), sizeof piece[0], piece.size(), stdout) == piece.size();
    }) && std::fflush(stdout) == 0;
    if (!written) {
      std::fprintf(stderr, "vntts: cannot write the samples\n");
      return kExitFailed;
    }
  }
  const std::uint32_t bytes = decoder.decoded_length();
  if (bytes == 0) {
    std::fprintf(stderr, "vntts: no MPEG audio frames in %s\n", input.c_str());
    return kExitFailed;
  }
  const std::uint32_t frames = f.block_align ? bytes / f.block_align : 0;
  std::fprintf(stderr, "%s: %u Hz, %u channel%s, 16-bit PCM, %u sample frames (%.3f s)\n",
               input.c_str(), f.samples_per_sec, f.channels, f.channels == 1 ? "" : "s", frames,
               f.samples_per_sec ? static_cast<double>(frames) / f.samples_per_sec : 0.0);
  return kExitDone;
}

} // namespace vntts::cli
