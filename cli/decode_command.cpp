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

namespace vntts::cli {

namespace {

void PrintUsage(std::FILE* out) {
  std::fprintf(out, "usage: vntts decode IN.mp3 [-o OUT.wav]\n\n"
                    "Without -o, raw interleaved s16le PCM is written to stdout.\n");
}

} // namespace

int run_decode(Args args) {
  std::string input;
  std::string output;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    if (a == "--help" || a == "-h") {
      PrintUsage(stdout);
      return 0;
    }
    if (a == "-o" && i + 1 < args.size()) {
      output = std::string(args[++i]);
    } else if (input.empty() && !a.empty() && a[0] != '-') {
      input = std::string(a);
    } else {
      PrintUsage(stderr);
      return 2;
    }
  }
  if (input.empty()) {
    PrintUsage(stderr);
    return 2;
  }

  UnitDecoder decoder;
  if (decoder.OpenFile(input) != 0) {
    std::fprintf(stderr, "vntts decode: cannot open %s\n", input.c_str());
    return 1;
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
    return 1;
  }

  if (!output.empty()) {
    const WaveFormat format = WaveFormat::pcm(f.channels, f.samples_per_sec, 16);
    StderrMessages messages;
    return write_wave_file(output, format, std::span<const std::uint8_t>(pcm.get(), bytes), {},
                           messages) == 0
               ? 0
               : 1;
  }
  if (std::fwrite(pcm.get(), 1, bytes, stdout) != bytes || std::fflush(stdout) != 0) {
    std::fprintf(stderr, "vntts decode: cannot write the samples\n");
    return 1;
  }
  return 0;
}

} // namespace vntts::cli
