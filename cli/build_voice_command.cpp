// vntts build-voice DIR -o OUT.dat: a syllable archive from a folder of recordings, one MP3 file
// per unit named after it (UTF-8 or internal-encoding names). Unlike the Create data tool, the
// command orders the archive by key (so names such as a-b.mp3 beside a.mp3 stay findable),
// leaves out files it cannot use and says why, and removes leading ID3v2 tags.
#include <cstdio>
#include <string>
#include <unistd.h>

#include "audio/archive/archive_writer.h"
#include "audio/archive/recording_list.h"
#include "command.h"
#include "core/messages.h"
#include "text/charset/charsets.h"

namespace vntts::cli {
namespace {

void PrintUsage(std::FILE* out) {
  std::fprintf(out, "usage: vntts build-voice DIR -o OUT.dat [--type mp3|wav|all] [--list-order]\n"
                    "  Writes OUT.dat, OUT.idx and OUT.arr from the recordings in DIR.\n"
                    "  --type        which files to take (default mp3)\n"
                    "  --list-order  keep the order of the sorted file names, as the Create data\n"
                    "                tool does, instead of ordering by key\n");
}

// A one-line bar redrawn in place; only drawn when stderr is a terminal.
class ProgressBar {
public:
  ProgressBar() : enabled_(::isatty(STDERR_FILENO) == 1) {}
  void Show(std::size_t done, std::size_t total) {
    if (!enabled_ || total == 0) return;
    constexpr int kWidth = 40;
    const int filled = static_cast<int>(done * kWidth / total);
    if (filled == last_ && done != total) return;
    last_ = filled;
    std::fprintf(stderr, "\r[%.*s%*s] %zu/%zu", filled, "########################################",
                 kWidth - filled, "", done, total);
    if (done == total) std::fputc('\n', stderr);
    std::fflush(stderr);
  }

private:
  bool enabled_;
  int last_ = -1;
};

} // namespace

int run_build_voice(Args args) {
  std::string folder, out;
  int type = 0;
  bool list_order = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const auto a = args[i];
    if ((a == "-o" || a == "--output") && i + 1 < args.size()) {
      out = std::string(args[++i]);
    } else if (a == "--type" && i + 1 < args.size()) {
      const auto t = args[++i];
      type = t == "mp3" ? 0 : t == "wav" ? 1 : t == "all" ? 2 : -1;
      if (type < 0) {
        PrintUsage(stderr);
        return 2;
      }
    } else if (a == "--list-order") {
      list_order = true;
    } else if (a == "-h" || a == "--help") {
      PrintUsage(stdout);
      return 0;
    } else if (folder.empty() && !a.starts_with("-")) {
      folder = std::string(a);
    } else {
      PrintUsage(stderr);
      return 2;
    }
  }
  if (folder.empty() || out.empty()) {
    PrintUsage(stderr);
    return 2;
  }
  std::error_code ec;
  if (!std::filesystem::is_directory(folder, ec)) {
    std::fprintf(stderr, "vntts: %s is not a folder\n", folder.c_str());
    return 1;
  }

  std::vector<SkippedRecording> skipped;
  const auto listed = ListRecordings(folder, type);
  const auto list = list_order ? listed : SortListByKey(listed, skipped);

  StderrMessages messages;
  ProgressBar bar;
  ArchiveWriteOptions options;
  options.skip_unusable = true;
  options.strip_id3v2 = true;
  options.require_frame_header = type == 0;
  options.report_completion = false;
  options.progress = [&](std::size_t done, std::size_t total) { bar.Show(done, total); };
  const auto result = WriteArchive(list, out, messages, options);
  skipped.insert(skipped.end(), result.skipped.begin(), result.skipped.end());

  for (const auto& s : skipped)
    std::printf("skipped %s: %s\n", InternalToUtf8(s.name).c_str(), s.reason.c_str());
  if (!result.ok) return 1;
  const auto companions = CreateDataCompanionPaths(out);
  std::printf("%zu units, %llu bytes of MPEG audio in %s (keys %s, records %s)\n", result.units,
              static_cast<unsigned long long>(result.data_bytes), out.c_str(),
              companions.keys.c_str(), companions.records.c_str());
  std::printf("%zu files found, %zu skipped, %zu ID3v2 tags left out\n", listed.size(),
              skipped.size(), result.stripped_tags);
  return result.units > 0 ? 0 : 1;
}

} // namespace vntts::cli
