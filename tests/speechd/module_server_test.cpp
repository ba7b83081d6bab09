// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

#include "fake_synthesizer.h"
#include "protocol/module_config.h"
#include "protocol/module_server.h"
#include "support/tsv_table.h"

namespace vntts::speechd {
namespace {

using namespace std::chrono_literals;

// The module's output, line by line; an audio message becomes one line "AUDIO n peak=p" once
// its data has been unescaped and checked against the sample count it declares.
class Transcript {
public:
  ModuleOutput output{[this](std::string_view message) { Take(message); }};

  // The next line, waiting up to 5 s for it; empty when none came.
  std::string Next() {
    std::unique_lock lock(mutex_);
    if (!arrived_.wait_for(lock, 5s, [this] { return !lines_.empty(); })) return {};
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }

  // The next line that is not audio.
  std::string NextEvent() {
    std::string line;
    while ((line = Next()).starts_with("AUDIO")) {
    }
    return line;
  }

  // Everything that came, without waiting.
  std::vector<std::string> Rest() {
    std::lock_guard lock(mutex_);
    std::vector<std::string> rest(lines_.begin(), lines_.end());
    lines_.clear();
    return rest;
  }

private:
  void Take(std::string_view message) {
    std::vector<std::string> taken;
    if (message.starts_with("705-")) {
      taken.push_back(DescribeAudio(message));
    } else {
      while (!message.empty()) {
        const std::size_t end = message.find('\n');
        taken.emplace_back(message.substr(0, end));
        message.remove_prefix(end + 1);
      }
    }
    std::lock_guard lock(mutex_);
    lines_.insert(lines_.end(), taken.begin(), taken.end());
    arrived_.notify_all();
  }

  static std::string DescribeAudio(std::string_view message) {
    const std::string_view header = "705-AUDIO";
    const std::size_t data = message.find(header) + header.size() + 1;
    const std::size_t count_at = message.find("num_samples=") + 12;
    const long count = std::stol(std::string(message.substr(count_at)));
    std::string bytes;
    for (std::size_t i = data; i < message.size() && message[i] != '\n'; ++i)
      bytes += message[i] == 0x7D ? static_cast<char>(message[++i] ^ 0x20) : message[i];
    EXPECT_TRUE(message.ends_with("\n705 AUDIO\n"));
    EXPECT_EQ(bytes.size(), 2u * static_cast<std::size_t>(count));
    int peak = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      const auto s = static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                               static_cast<std::uint8_t>(bytes[i + 1]) << 8);
      peak = std::max(peak, std::abs(int{s}));
    }
    return "AUDIO " + std::to_string(count) + " peak=" + std::to_string(peak);
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<std::string> lines_;
};

void Send(ModuleServer& server, std::initializer_list<std::string_view> lines) {
  for (std::string_view line : lines)
    server.OnLine(line);
}

void Start(ModuleServer& server, Transcript& transcript) {
  Send(server, {"INIT"});
  EXPECT_EQ(transcript.Next(), "299-fake voice ready");
  EXPECT_EQ(transcript.Next(), "299 OK LOADED SUCCESSFULLY");
}

TEST(ModuleServer, AnswersAConversationOfSpeechDispatcher) {
  test::FakeSynthesizer voice;
  Transcript transcript;
  ModuleServer server(voice, transcript.output);
  bool running = true;
  for (const auto& row : vntts::test::ReadTsv("speechd_session")) {
    std::string line = row.at(1);
    for (std::size_t i = 2; i < row.size(); ++i)
      line += "\t" + row[i];
    if (row[0] == "send") {
      ASSERT_TRUE(running) << "nothing may follow QUIT";
      running = server.OnLine(line);
    } else {
      ASSERT_EQ(transcript.Next(), line);
    }
  }
  EXPECT_FALSE(running);
  EXPECT_TRUE(transcript.Rest().empty());
}

TEST(ModuleServer, StopAndPauseEndSpeechAtTheNextPiece) {
  test::FakeSynthesizer voice;
  voice.chunks = 1000;
  voice.delay = 2ms;
  Transcript transcript;
  ModuleServer server(voice, transcript.output);
  Start(server, transcript);

  // STOP: no reply, no more audio, a STOP event; the module is free to speak at once.
  Send(server, {"SPEAK", "<speak>một hai ba</speak>", "."});
  EXPECT_EQ(transcript.Next(), "202 OK SEND DATA");
  EXPECT_EQ(transcript.Next(), "200 OK SPEAKING");
  EXPECT_EQ(transcript.Next(), "701 BEGIN");
  EXPECT_EQ(transcript.Next(), "AUDIO 12 peak=500");
  Send(server, {"SPEAK"});
  EXPECT_EQ(transcript.NextEvent(), "301 ERROR CANT SPEAK") << "one message at a time";
  Send(server, {"STOP"});
  EXPECT_EQ(transcript.NextEvent(), "703 STOP");

  // PAUSE: speech goes on to the next mark of the server's own and ends there.
  voice.chunks = 3;
  voice.delay = 20ms;
  Send(server, {"SPEAK", "<speak>a<mark name=\"x\"/>b<mark name=\"__spd_id_1\"/>c</speak>", "."});
  EXPECT_EQ(transcript.Next(), "202 OK SEND DATA");
  EXPECT_EQ(transcript.Next(), "200 OK SPEAKING");
  EXPECT_EQ(transcript.Next(), "701 BEGIN");
  EXPECT_EQ(transcript.Next(), "AUDIO 1 peak=500");
  Send(server, {"PAUSE"});
  std::vector<std::string> seen;
  std::string line;
  while ((line = transcript.NextEvent()) != "704 PAUSE" && !line.empty())
    seen.push_back(line);
  EXPECT_EQ(line, "704 PAUSE");
  EXPECT_EQ(seen, (std::vector<std::string>{"700-x", "700 INDEX MARK", "700-__spd_id_1",
                                            "700 INDEX MARK"}));

  // QUIT while speaking stops the speech first.
  Send(server, {"SPEAK", "<speak>dài</speak>", "."});
  EXPECT_EQ(transcript.Next(), "202 OK SEND DATA");
  EXPECT_EQ(transcript.Next(), "200 OK SPEAKING");
  EXPECT_FALSE(server.OnLine("QUIT"));
  const auto rest = transcript.Rest();
  ASSERT_GE(rest.size(), 2u);
  EXPECT_EQ(rest[rest.size() - 2], "703 STOP");
  EXPECT_EQ(rest.back(), "210 OK QUIT");
}

TEST(ModuleServer, AudioEscapingCoversEveryByte) {
  std::vector<std::uint8_t> all(256);
  for (int b = 0; b < 256; ++b)
    all[static_cast<std::size_t>(b)] = static_cast<std::uint8_t>(b);
  std::string escaped;
  AppendEscaped(all, escaped);
  EXPECT_EQ(escaped.size(), 258u);
  EXPECT_EQ(escaped.find('\n'), std::string::npos);
  EXPECT_EQ(escaped.substr(10, 2), "\x7D\x2A");  // '\n'
  EXPECT_EQ(escaped.substr(126, 2), "\x7D\x5D"); // 0x7D itself
}

TEST(ModuleServer, MessagesBecomeRequestsForTheVoice) {
  for (const auto& row : vntts::test::ReadTsv("speech_requests")) {
    ModuleSettings settings;
    std::string_view list = row.at(2);
    while (!list.empty()) {
      const std::size_t end = std::min(list.find(';'), list.size());
      settings.Apply(list.substr(0, end));
      list.remove_prefix(std::min(end + 1, list.size()));
    }
    const MessageKind kind = row[0] == "text"   ? MessageKind::kText
                             : row[0] == "char" ? MessageKind::kChar
                                                : MessageKind::kKey;
    const SpeechRequest r = RequestFor(kind, row.at(1), settings);
    SCOPED_TRACE(row[0] + " " + row[1] + " " + row[2]);
    EXPECT_EQ(r.text, row.at(3));
    EXPECT_EQ(r.spell, row.at(4) == "1");
    EXPECT_NEAR(r.speed, std::stod(row.at(5)), 1e-5);
    EXPECT_NEAR(r.pitch, std::stod(row.at(6)), 1e-5);
    EXPECT_NEAR(r.gain, std::stod(row.at(7)), 1e-5);
    EXPECT_EQ(r.icon_before, row.size() > 8 ? row[8] : "");
  }
}

TEST(ModuleConfig, ReadsItsOwnLinesAndSkipsTheRest) {
  EXPECT_EQ(ReadModuleConfig("# VnttsDataDirectory \"/no\"\nDebug 1\n"
                             "  VnttsDataDirectory   \"/a b/index\"  \r\n")
                .data_directory,
            "/a b/index");
  EXPECT_EQ(ReadModuleConfig("VnttsDataDirectory /plain\nVnttsDataDirectory").data_directory,
            "/plain");
  EXPECT_EQ(ReadModuleConfig("").data_directory, "");
  EXPECT_FALSE(LoadModuleConfig("/nonexistent/vntts.conf"));
}

} // namespace
} // namespace vntts::speechd
