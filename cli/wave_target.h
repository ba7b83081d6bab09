// SPDX-License-Identifier: MIT
#pragma once
// The WAV file `vntts say -w` writes. The speech goes into a private temporary folder first and
// reaches the user's path only when all of it was written, so a failure never leaves a half
// file, never truncates the file that was there, and never removes anything the command did not
// make. The target is checked before any speech starts: a folder, a device, a file that cannot
// be written, or (with --append) a file that is not WAV is refused with a message.
#include <filesystem>
#include <string>

namespace vntts::cli {

class WaveTarget {
public:
  // path "-" is standard output. error() is empty when the target can be written.
  WaveTarget(const std::string& path, bool append);
  ~WaveTarget();
  WaveTarget(const WaveTarget&) = delete;
  WaveTarget& operator=(const WaveTarget&) = delete;

  const std::string& Error() const { return error_; }

  // Where the engine writes the next piece of speech. The engine replaces the file of its
  // previous call, so each piece gets a new name that the file so far is moved to first:
  // appending to it is then the engine's own appending.
  std::string NextPiecePath();
  // True when some piece produced a file.
  bool HasSpeech() const;
  // The temporary file, for writing an empty WAV when the text had no words.
  std::string CurrentPath() const { return current_.string(); }

  // Copies the finished speech to the target; false with error() set.
  bool Commit();

private:
  bool Fail(const std::string& why);

  std::string path_;
  bool to_stdout_ = false;
  int fd_ = -1;
  bool created_ = false;
  bool committed_ = false;
  std::filesystem::path folder_;
  std::filesystem::path current_;
  int pieces_ = 0;
  std::string error_;
};

} // namespace vntts::cli
