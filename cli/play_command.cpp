// vntts play: play a WAV file through the sound system.
//
//   vntts play [--loop N] [--volume N] [--events] FILE.wav
//   --loop N     play the file N times
//   --volume N   0 .. 65535, both channels
//   --events     print the file's events as they fire
// VNTTS_AUDIO=pulse|alsa|null picks the backend.
#include <charconv>
#include <cstdio>
#include <optional>
#include <string>

#include "audio/wave_device.h"
#include "command.h"
#include "core/messages.h"

namespace vntts::cli {
namespace {

constexpr const char* kUsage =
    "usage: vntts play [--loop N] [--volume 0..65535] [--events] FILE.wav\n";

std::optional<std::uint32_t> ParseCount(std::string_view s) {
  std::uint32_t v = 0;
  auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return v;
}

// Shows messages on stderr and remembers that one was shown: playing reports a missing
// device with a message and a success result, but the command must fail then.
class NoticingMessages final : public Messages {
public:
  void report(std::string_view text, std::string_view caption, MessageIcon icon) override {
    shown = true;
    stderr_.report(text, caption, icon);
  }
  bool shown = false;

private:
  StderrMessages stderr_;
};

} // namespace

int run_play(Args args) {
  std::string path;
  std::uint32_t loops = 1;
  std::optional<std::uint32_t> volume;
  bool events = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string_view a = args[i];
    if ((a == "--loop" || a == "--volume") && i + 1 < args.size()) {
      const auto n = ParseCount(args[++i]);
      if (!n || (a == "--volume" && *n > 0xFFFF)) {
        std::fprintf(stderr, "vntts play: bad value for %.*s\n", static_cast<int>(a.size()),
                     a.data());
        return 2;
      }
      (a == "--loop" ? loops : volume.emplace()) = *n;
    } else if (a == "--events") {
      events = true;
    } else if (a == "-h" || a == "--help") {
      std::fputs(kUsage, stdout);
      return 0;
    } else if (path.empty() && !a.starts_with("--")) {
      path = a;
    } else {
      std::fputs(kUsage, stderr);
      return 2;
    }
  }
  if (path.empty()) {
    std::fputs(kUsage, stderr);
    return 2;
  }

  NoticingMessages messages;
  WaveDevice device(messages);
  if (device.Load(path) != 0) return 1;
  device.SetLoopCount(loops);
  if (volume) device.SetVolume(*volume << 16 | *volume);
  if (events)
    device.SetNotify([](const EventRecord& e) {
      std::printf("event kind=%u position=%u text=%u+%u\n", e.kind, e.position, e.text_start,
                  e.text_length);
      std::fflush(stdout);
    });
  return device.Play() == device_result::kOk && !messages.shown ? 0 : 1;
}

} // namespace vntts::cli
