// SPDX-License-Identifier: MIT
#pragma once
// Where `vntts say` reads its text: a file, or standard input. A regular file is read whole, so
// that a sentence wrapped over two lines stays one sentence; a pipe or a terminal is read as
// its lines arrive, so that each line is spoken while the writer is still writing the next.
// Folders and devices are refused, and no piece of text may pass kMaxTextBytes: a runaway
// source (`-f /dev/zero`, a pipe with no line ends) ends with a message, not with all memory.
#include <cstddef>
#include <string>

namespace vntts::cli {

inline constexpr std::size_t kMaxTextBytes = std::size_t{16} << 20;

class TextInput {
public:
  // path "-" is standard input. On failure error() says why, naming the file.
  explicit TextInput(const std::string& path);
  ~TextInput();
  TextInput(const TextInput&) = delete;
  TextInput& operator=(const TextInput&) = delete;

  // The next piece of text: a whole regular file, or from a pipe every complete line that has
  // arrived (waiting for the first one), or what is left at the end. False at the end of the
  // input or on an error (then error() is not empty).
  bool Next(std::string& piece);
  const std::string& Error() const { return error_; }

private:
  bool Fail(const std::string& why);
  bool ReadWhole(std::string& piece);
  bool ReadLines(std::string& piece);
  // Reads what the descriptor has into pending_; false at its end. Waits only when asked to.
  bool Fill(bool wait);

  std::string name_;
  int fd_ = -1;
  bool owned_ = false;
  bool whole_ = false;
  bool ended_ = false;
  std::string pending_;
  std::string error_;
};

} // namespace vntts::cli
