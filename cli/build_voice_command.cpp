// SPDX-License-Identifier: MIT
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
#include "option_parser.h"
#include "text/charset/charsets.h"

namespace vntts::cli {
namespace {

constexpr CommandSyntax kSyntax{
    "build-voice", "DIR",
    "Writes OUT.dat, OUT.idx and OUT.arr from the recordings in DIR, one file per syllable."};

enum : int { kType = 256, kListOrder };

constexpr OptionSpec kOptions[] = {
    {'o', 'o', "output", "OUT.dat", "the archive to write (required)"},
    {kType, 0, "type", "mp3|wav|all", "which files to take (default mp3)"},
    {kListOrder, 0, "list-order", nullptr,
     "keep the order of the sorted file names instead of ordering by key"},
};

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

int RunBuildVoice(Args args) {
  const ParsedArgs parsed = ParseArgs(kSyntax, kOptions, args);
  if (parsed.exit_status) return *parsed.exit_status;
  std::string out;
  int type = 0;
  bool list_order = false;
  for (const auto& o : parsed.options) {
    if (o.id == 'o') out = o.value;
    if (o.id == kListOrder) list_order = true;
    if (o.id == kType) {
      type = o.value == "mp3" ? 0 : o.value == "wav" ? 1 : o.value == "all" ? 2 : -1;
      if (type < 0) return UsageError(kSyntax, "--type is mp3, wav or all, not '" + o.value + "'");
    }
  }
  if (parsed.operands.size() != 1) return UsageError(kSyntax, "give one folder of recordings");
  if (out.empty()) return UsageError(kSyntax, "-o OUT.dat is needed");
  const std::string& folder = parsed.operands.front();
  std::error_code ec;
  if (!std::filesystem::is_directory(folder, ec)) {
    std::fprintf(stderr, "vntts: %s is not a folder\n", folder.c_str());
    return kExitFailed;
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
  if (!result.ok) return kExitFailed;
  const auto companions = CreateDataCompanionPaths(out);
  std::printf("%zu units, %llu bytes of MPEG audio in %s (keys %s, records %s)\n", result.units,
              static_cast<unsigned long long>(result.data_bytes), out.c_str(),
              companions.keys.c_str(), companions.records.c_str());
  std::printf("%zu files found, %zu skipped, %zu ID3v2 tags left out\n", listed.size(),
              skipped.size(), result.stripped_tags);
  return result.units > 0 ? kExitDone : kExitFailed;
}

} // namespace vntts::cli
