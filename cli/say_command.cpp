// vntts say: speak text aloud, or into a WAV file.
//
//   vntts say [options] [TEXT...]      (also: vntts TEXT...)
//   -f FILE            read the text from FILE ("-" for standard input)
//   -w OUT.wav         write the speech to OUT.wav instead of playing it (also -o)
//   --append           with -w: add to an existing OUT.wav instead of replacing it
//   --rate N           0 (slowest) .. 5000 (fastest, the default)
//   --volume N         0 .. 65535, both channels
//   --format CODE      output format code 8..35 (e.g. 22 = mono 22050 Hz 16-bit)
//   --encoding E       utf-8 (default), vni (the internal 8-bit text) or cp1258
//   --events           print every event as it fires
// Without TEXT and -f the text comes from standard input.
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>

#include "command.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "text/charset/charsets.h"

namespace vntts::cli {
namespace {

constexpr const char* kUsage =
    "usage: vntts say [-f FILE] [-w OUT.wav [--append]] [--rate 0..5000] [--volume 0..65535]\n"
    "                 [--format CODE] [--encoding utf-8|vni|cp1258] [--events] [TEXT...]\n";

enum class Encoding { Utf8, Internal, Cp1258 };

struct SayOptions {
  std::string text;
  bool have_text = false;
  std::string file;
  std::string wav;
  bool append = false;
  std::optional<std::uint32_t> rate, volume, format;
  Encoding encoding = Encoding::Utf8;
  bool events = false;
};

std::optional<std::uint32_t> Number(std::string_view s) {
  std::uint32_t v = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return v;
}

// Parses the arguments; a message on stderr and nullopt for a usage error.
std::optional<SayOptions> Parse(Args args) {
  SayOptions o;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    auto value = [&]() -> std::optional<std::string_view> {
      if (i + 1 >= args.size()) {
        std::fprintf(stderr, "vntts say: %.*s needs a value\n", static_cast<int>(a.size()),
                     a.data());
        return std::nullopt;
      }
      return args[++i];
    };
    auto number = [&](std::optional<std::uint32_t>& into, std::uint32_t max) {
      auto v = value();
      if (!v) return false;
      into = Number(*v);
      if (!into || *into > max) {
        std::fprintf(stderr, "vntts say: %.*s wants a number from 0 to %u\n",
                     static_cast<int>(a.size()), a.data(), max);
        return false;
      }
      return true;
    };
    if (a == "-f") {
      auto v = value();
      if (!v) return std::nullopt;
      o.file = std::string(*v);
    } else if (a == "-w" || a == "-o") {
      auto v = value();
      if (!v) return std::nullopt;
      o.wav = std::string(*v);
    } else if (a == "--append") {
      o.append = true;
    } else if (a == "--rate") {
      if (!number(o.rate, 5000)) return std::nullopt;
    } else if (a == "--volume") {
      if (!number(o.volume, 65535)) return std::nullopt;
    } else if (a == "--format") {
      if (!number(o.format, 35)) return std::nullopt;
    } else if (a == "--encoding") {
      auto v = value();
      if (!v) return std::nullopt;
      if (*v == "utf-8" || *v == "utf8")
        o.encoding = Encoding::Utf8;
      else if (*v == "vni")
        o.encoding = Encoding::Internal;
      else if (*v == "cp1258")
        o.encoding = Encoding::Cp1258;
      else {
        std::fprintf(stderr, "vntts say: unknown encoding '%.*s' (utf-8, vni, cp1258)\n",
                     static_cast<int>(v->size()), v->data());
        return std::nullopt;
      }
    } else if (a == "--events") {
      o.events = true;
    } else if (a == "-h" || a == "--help") {
      std::fputs(kUsage, stdout);
      std::exit(0);
    } else if (a == "--") {
      for (++i; i < args.size(); ++i) {
        o.text += (o.have_text ? " " : "") + std::string(args[i]);
        o.have_text = true;
      }
    } else if (a.size() > 1 && a[0] == '-') {
      std::fprintf(stderr, "vntts say: unknown option '%.*s'\n%s", static_cast<int>(a.size()),
                   a.data(), kUsage);
      return std::nullopt;
    } else {
      o.text += (o.have_text ? " " : "") + std::string(a);
      o.have_text = true;
    }
  }
  if (o.have_text && !o.file.empty()) {
    std::fprintf(stderr, "vntts say: give the text or -f FILE, not both\n");
    return std::nullopt;
  }
  if (o.append && o.wav.empty()) {
    std::fprintf(stderr, "vntts say: --append goes with -w\n");
    return std::nullopt;
  }
  return o;
}

// Every message on stderr but the note that a file was saved, which -w makes for each file.
class SayMessages final : public Messages {
public:
  void report(std::string_view text, std::string_view caption, MessageIcon) override {
    if (text == "Complete!") return;
    std::lock_guard lock(mutex_);
    if (caption.empty())
      std::fprintf(stderr, "vntts: %.*s\n", static_cast<int>(text.size()), text.data());
    else
      std::fprintf(stderr, "vntts: %.*s: %.*s\n", static_cast<int>(caption.size()), caption.data(),
                   static_cast<int>(text.size()), text.data());
  }

private:
  std::mutex mutex_;
};

constexpr const char* kEventNames[] = {
    "Undefined",         "Start input stream", "End input stream", "Word boundary",
    "Sentence boundary", "Sound start",        "Sound end",        "Draw",
    "Open dialog",       "Close dialog"};

struct EventPrinter {
  const std::string* internal_text;
};

void VNTTS_CALL PrintEvent(std::uintptr_t user, VNEvent e) {
  const auto* printer = reinterpret_cast<const EventPrinter*>(user);
  const char* name = e.kind < std::size(kEventNames) ? kEventNames[e.kind]
                     : e.kind == 20                  ? "Reserved"
                                                     : "?";
  std::string what;
  const std::string& text = *printer->internal_text;
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

std::optional<std::string> ReadAll(const std::string& path) {
  if (path == "-") {
    std::ostringstream s;
    s << std::cin.rdbuf();
    return s.str();
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "vntts say: cannot read %s\n", path.c_str());
    return std::nullopt;
  }
  return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

int run_say(Args args) {
  auto options = Parse(args);
  if (!options) return 2;
  std::string text = options->text;
  if (!options->have_text) {
    auto read = ReadAll(options->file.empty() ? "-" : options->file);
    if (!read) return 1;
    text = std::move(*read);
  }
  switch (options->encoding) {
  case Encoding::Utf8:
    text = Utf8ToInternal(text);
    break;
  case Encoding::Cp1258:
    text = AsciiToInternal(text);
    break;
  case Encoding::Internal:
    break;
  }

  SayMessages messages;
  SpeechEngine engine(messages, DataFolder::Locate());
  if (options->rate) engine.SetRateSpeech(*options->rate);
  if (options->volume) engine.SetVolume(*options->volume * 0x10001u);
  if (options->format && !engine.SetAudioFormat(*options->format)) {
    std::fprintf(stderr, "vntts say: format code %u is not one this output plays\n",
                 *options->format);
    return 1;
  }
  EventPrinter printer{&text};
  if (options->events) engine.SetNotify(&PrintEvent, reinterpret_cast<std::uintptr_t>(&printer));

  if (!options->wav.empty()) {
    if (!options->append) {
      std::error_code ec;
      std::filesystem::remove(options->wav, ec);
    }
    engine.SpeakToFile(text, options->wav);
  } else {
    engine.Speak(text);
  }
  engine.WaitUntilDone();
  if (!options->wav.empty() && !std::filesystem::exists(options->wav) && !text.empty()) {
    std::fprintf(stderr, "vntts say: nothing was spoken into %s\n", options->wav.c_str());
    return 1;
  }
  return 0;
}

} // namespace vntts::cli
