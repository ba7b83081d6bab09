// SPDX-License-Identifier: MIT
// vntts say: speak text aloud, into a WAV file, or into a pipe. `vntts TEXT` is the short form.
// The options are those speech users know from other Linux speech commands where they fit
// (-w, --stdout, -f, -s, -p, -a, -m, -v, -q, -x); `vntts say --help` and vntts(1) list them.
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "audio/wave_format.h"
#include "audio/wave_writing.h"
#include "command.h"
#include "command_messages.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "option_parser.h"
#include "output_format.h"
#include "speech_speed.h"
#include "spoken_words.h"
#include "ssml_text.h"
#include "text/charset/charsets.h"
#include "text_input.h"
#include "voices.h"
#include "wave_target.h"

namespace vntts::cli {
namespace {

constexpr CommandSyntax kSyntax{
    "say", "[TEXT...]",
    "Speaks Vietnamese TEXT aloud, or into a WAV file. Without TEXT and -f, standard input is\n"
    "read and spoken line by line as it arrives."};

enum : int {
  kStdout = 256,
  kAppend,
  kEncoding,
  kVolume,
  kFormat,
  kVoices,
  kEvents,
  kVerbose,
};

constexpr OptionSpec kOptions[] = {
    {'w', 'w', "output", "FILE", "write the speech to the WAV file FILE ('-': standard output)"},
    {'o', 'o', nullptr, "FILE", "the same as -w"},
    {kStdout, 0, "stdout", nullptr, "write the WAV to standard output, for pipes"},
    {kAppend, 0, "append", nullptr, "with -w: add to the end of an existing WAV file"},
    {'f', 'f', "file", "FILE", "speak the text of FILE ('-': standard input)"},
    {'m', 'm', "markup", nullptr, "the text is SSML: markup is left out, not read"},
    {kEncoding, 0, "encoding", "ENC", "form of the text: utf-8 (default), vni or cp1258"},
    {'s', 's', "speed", "WPM", "speed in words a minute (127 to 1000), the pitch kept"},
    {'r', 'r', "rate", "N", "the engine's rate, 0 (slowest) to 5000 (fastest, the default)"},
    {'p', 'p', "pitch", "N", "pitch 0 to 99, 50 the voice's own"},
    {'a', 'a', "amplitude", "N", "loudness 0 to 100 (the default)"},
    {kVolume, 0, "volume", "N", "volume 0 to 65535 on both channels"},
    {kFormat, 0, "format", "FORMAT", "output format: RATE-mono|stereo-8|16 or a format code"},
    {'v', 'v', "voice", "VOICE", "a voice by name (see --voices) or a data folder"},
    {kVoices, 0, "voices", nullptr, "list the voices found and exit"},
    {'q', 'q', "quiet", nullptr, "do not play the speech (-w still writes it)"},
    {'x', 'x', "words", nullptr, "print the words spoken, one sentence a line"},
    {kEvents, 0, "events", nullptr, "print every event as it fires"},
    {kVerbose, 0, "verbose", nullptr, "also print the library's information messages"},
};

enum class Encoding { kUtf8, kInternal, kCp1258 };

struct SayOptions {
  std::optional<std::string> text; // from the operands
  std::string file;                // -f
  std::optional<std::string> output;
  bool append = false;
  bool markup = false;
  Encoding encoding = Encoding::kUtf8;
  std::optional<std::uint32_t> rate, speed, volume, pitch, format;
  std::optional<std::string> voice;
  bool list_voices = false, quiet = false, words = false, events = false, verbose = false;
};

// Reads the parsed options into SayOptions; nullopt after a usage message.
std::optional<SayOptions> ReadOptions(const ParsedArgs& parsed) {
  SayOptions o;
  for (const auto& p : parsed.options) {
    switch (p.id) {
    case 'w':
    case 'o':
      o.output = p.value;
      break;
    case kStdout:
      o.output = "-";
      break;
    case kAppend:
      o.append = true;
      break;
    case 'f':
      o.file = p.value;
      break;
    case 'm':
      o.markup = true;
      break;
    case kEncoding:
      if (p.value == "utf-8" || p.value == "utf8")
        o.encoding = Encoding::kUtf8;
      else if (p.value == "vni")
        o.encoding = Encoding::kInternal;
      else if (p.value == "cp1258")
        o.encoding = Encoding::kCp1258;
      else
        return UsageError(kSyntax, "unknown encoding '" + p.value + "' (utf-8, vni, cp1258)"),
               std::nullopt;
      break;
    case 's': {
      const auto wpm = NumberValue(kSyntax, p, 10, 1000);
      if (!wpm) return std::nullopt;
      bool clamped = false;
      o.speed = SpeedPercentForWordsPerMinute(static_cast<unsigned>(*wpm), &clamped);
      if (clamped)
        std::fprintf(stderr, "vntts: note: -s %ld is out of reach; speaking at %u words a minute\n",
                     *wpm, *o.speed * kVoiceWordsPerMinute / 100);
      break;
    }
    case 'r':
    case 'p':
    case 'a':
    case kVolume: {
      const long maximum = p.id == 'r' ? 5000 : p.id == 'p' ? 99 : p.id == 'a' ? 100 : 65535;
      const auto value = NumberValue(kSyntax, p, 0, maximum);
      if (!value) return std::nullopt;
      const auto v = static_cast<std::uint32_t>(*value);
      if (p.id == 'r') o.rate = v;
      // 50 is the voice's own pitch; each 50 steps double or halve it (16.16 fixed point).
      if (p.id == 'p') o.pitch = static_cast<std::uint32_t>(65536.0 * std::exp2((v - 50.0) / 50.0));
      if (p.id == 'a') o.volume = v * 65535 / 100;
      if (p.id == kVolume) o.volume = v;
      break;
    }
    case kFormat:
      o.format = FormatCode(p.value);
      if (!o.format) return UsageError(kSyntax, FormatError(p.value)), std::nullopt;
      break;
    case 'v':
      o.voice = p.value;
      break;
    case kVoices:
      o.list_voices = true;
      break;
    case 'q':
      o.quiet = true;
      break;
    case 'x':
      o.words = true;
      break;
    case kEvents:
      o.events = true;
      break;
    case kVerbose:
      o.verbose = true;
      break;
    }
  }
  if (!parsed.operands.empty()) {
    o.text.emplace();
    for (const auto& operand : parsed.operands)
      *o.text += (o.text->empty() ? "" : " ") + operand;
  }
  if (o.text && !o.file.empty())
    return UsageError(kSyntax, "give the text or -f FILE, not both"), std::nullopt;
  if ((o.words || o.events) && o.output == "-")
    return UsageError(kSyntax, "-x and --events print on standard output, which carries the WAV"),
           std::nullopt;
  if (o.append && (!o.output || *o.output == "-"))
    return UsageError(kSyntax, "--append goes with -w FILE"), std::nullopt;
  return o;
}

constexpr const char* kEventNames[] = {
    "Undefined",         "Start input stream", "End input stream", "Word boundary",
    "Sentence boundary", "Sound start",        "Sound end",        "Draw",
    "Open dialog",       "Close dialog"};

void VNTTS_CALL PrintEvent(std::uintptr_t user, VNEvent e) {
  const std::string& text = *reinterpret_cast<const std::string*>(user);
  const char* name = e.kind < std::size(kEventNames) ? kEventNames[e.kind]
                     : e.kind == 20                  ? "Reserved"
                                                     : "?";
  std::string what;
  auto quote = [&](std::uint32_t start, std::uint32_t length) {
    if (start <= text.size())
      what = " \"" + InternalToUtf8(std::string_view(text).substr(start, length)) + "\"";
  };
  if (e.kind == VN_EVENT_WORD_BOUNDARY)
    quote(e.text_start, e.text_length);
  else if (e.kind == VN_EVENT_SENTENCE_BOUNDARY)
    quote(e.param[0], e.param[1]);
  std::printf("%-18s position %-8u text %u+%u%s\n", name, e.position, e.text_start, e.text_length,
              what.c_str());
  std::fflush(stdout);
}

int ListVoices() {
  for (const auto& voice : FindVoices())
    std::printf("%-12s %s%s\n", voice.name.c_str(), voice.folder.c_str(),
                HasVoice(voice.folder) ? "" : "  (no syllable archive)");
  return std::fflush(stdout) == 0 ? kExitDone : kExitFailed;
}

std::string ToInternal(std::string text, const SayOptions& o) {
  if (o.markup) text = SsmlToText(text);
  switch (o.encoding) {
  case Encoding::kUtf8:
    return Utf8ToInternal(text);
  case Encoding::kCp1258:
    return AsciiToInternal(text);
  case Encoding::kInternal:
    break;
  }
  return text;
}

int Fail(const std::string& message) {
  std::fprintf(stderr, "vntts: %s\n", message.c_str());
  return kExitFailed;
}

// The settings of the command line on the engine; false after a message.
bool ApplySettings(SpeechEngine& engine, const SayOptions& o, bool to_file, std::string* internal) {
  if (o.volume) engine.SetVolume(*o.volume * 0x10001u);
  if (o.speed) engine.SetSpeed(*o.speed);
  if (o.pitch) {
    if (engine.GetPitchRange().maximum == 0)
      std::fprintf(stderr, "vntts: this build cannot change the pitch; -p is left out\n");
    else
      engine.SetPitch(*o.pitch);
  }
  // Files the command writes are mono 16-bit unless asked otherwise.
  const std::uint32_t format = o.format ? *o.format : to_file ? kDefaultFileFormatCode : 0;
  if (format != 0 && !engine.SetAudioFormat(format)) {
    Fail("the output cannot take format " + std::to_string(format));
    return false;
  }
  if (o.events) engine.SetNotify(&PrintEvent, reinterpret_cast<std::uintptr_t>(internal));
  return true;
}

// Puts the finished speech where -w asked; false after a message.
bool FinishFile(WaveTarget& target, const SayOptions& o, Messages& messages) {
  // A text without words still gives a valid, empty WAV file.
  if (!target.HasSpeech()) {
    const auto format = StandardFormatOf(o.format.value_or(kDefaultFileFormatCode));
    if (WriteWaveFile(target.CurrentPath(), format, {}, {}, messages) != 0) return false;
  }
  if (!target.Commit()) {
    Fail(target.Error());
    return false;
  }
  return true;
}

} // namespace

int RunSay(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  const auto options = ReadOptions(parsed);
  if (!options) return kExitUsage;
  const SayOptions& o = *options;
  if (o.list_voices) return ListVoices();

  std::filesystem::path folder = DataFolder::Locate().path();
  if (o.voice) {
    const auto found = ResolveVoice(*o.voice);
    if (!found) return Fail("no voice named '" + *o.voice + "'; 'vntts say --voices' lists them");
    folder = *found;
  }
  const bool speaking = o.output || !o.quiet;
  if (speaking && !HasVoice(folder))
    return Fail("no voice in " + folder.string() +
                " (main_dic.dat is missing); 'vntts say --voices' lists the voices found");

  std::optional<TextInput> input;
  if (!o.text) {
    input.emplace(o.file.empty() ? "-" : o.file);
    if (!input->Error().empty()) return Fail(input->Error());
  }
  std::optional<WaveTarget> target;
  if (o.output) {
    target.emplace(*o.output, o.append);
    if (!target->Error().empty()) return Fail(target->Error());
  }

  CommandMessages messages(o.verbose);
  std::optional<SpeechEngine> engine;
  if (speaking) engine.emplace(messages, DataFolder(folder));
  std::optional<SpokenWords> words;
  if (o.words) words.emplace(folder, messages);
  std::string internal; // the text being spoken; the event printer reads it
  if (engine && !ApplySettings(*engine, o, target.has_value(), &internal)) return kExitFailed;

  std::string piece = o.text.value_or("");
  bool more = true;
  while (more && !messages.Failed()) {
    if (input && !input->Next(piece)) break;
    more = input.has_value();
    if (engine) engine->WaitUntilDone(); // the previous piece, before its text is replaced
    if (messages.Failed()) break;
    internal = ToInternal(std::move(piece), o);
    if (words && !words->Write(internal, false, stdout))
      return Fail("cannot write standard output");
    if (!engine) continue;
    // The rate decays along a text, so every piece starts from the rate asked for.
    if (o.rate) engine->SetRateSpeech(*o.rate);
    if (target)
      engine->SpeakToFile(internal, target->NextPiecePath());
    else
      engine->Speak(internal);
  }
  if (engine) engine->WaitUntilDone();
  if (input && !input->Error().empty()) return Fail(input->Error());
  if (messages.Failed()) return kExitFailed;
  if (target && !FinishFile(*target, o, messages)) return kExitFailed;
  return kExitDone;
}

} // namespace vntts::cli
