// The real recorder between the tests and a host: what it passes on, and what it records.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <random>
#include <thread>

#include "tests/end_to_end/system_fixture.h"
#include "tests/end_to_end/tested_host.h"
#include "tools/tap_settings.h"

namespace fs = std::filesystem;
using namespace std::literals;

namespace {

const std::string page_request =
    R"({"method":"get-info-for-page","data":{"source":"https://ann:pw@a.example/in?k=1#f",)"
    R"("inputs":[{"name":"pw","value":"hunter2"}]}})";
const std::string pushed_url = hex(u"msg::CfMsgOpenUrl\0a1b2\0pages/sign-in?k=2\0"sv);

// A folder with the recorder in front of the host that the settings name, or of a real one with the
// probe.
struct recording {
  explicit recording(tap_settings told = {}, const std::string& script = {}) {
    fs::copy_file(TAP_PROGRAM, program());
    if (told.host.empty()) {
      fs::create_directory(host().parent_path());
      fs::copy_file(HOST_PROGRAM, host());
      fs::copy_file(PROBE_LIBRARY, host().parent_path() / LIBRARY_NAME);
      write_script(script);
      told.host = host().string();
    }
    std::ofstream(folder / tap_settings_name) << tap_settings_text(told);
  }
  ~recording() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  void write_script(const std::string& script) const {
    std::ofstream(host().parent_path() / "script") << script;
  }
  fs::path host() const { return folder / "host" / HOST_NAME; }
  fs::path program() const { return folder / fs::path(TAP_PROGRAM).filename(); }

  fs::path capture() const {
    fs::path found;
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path().extension() == ".jsonl") found = entry.path();
    }
    return found;
  }

  // The lines of the capture, without their times.
  lines captured() const {
    lines found;
    std::ifstream file(capture());
    for (std::string line; std::getline(file, line);) {
      found.push_back(line.erase(line.find(R"(,"time":")"), 37));
    }
    return found;
  }

  fs::path folder = make_folder();
};

// One run of a program: sends all input, ends it, and collects all output. `before_end` is called
// before the input ends.
struct session {
  session(
      const fs::path& program, const lines& arguments, const std::string& input,
      const std::function<void()>& before_end = [] {}) {
    std::string error;
    const auto host = platform::child_process::start(program.string(), arguments, error);
    if (host == nullptr) return;
    std::thread writer([&] {
      (void)host->write(input.data(), input.size());
      before_end();
      host->close_input();
    });
    char block[65536];
    while (const auto count = host->read(block, sizeof block, host->forever).value_or(0)) {
      output.append(block, count);
    }
    writer.join();
    exit_value = host->wait(20s).value_or(-1);
  }

  std::string output;
  int exit_value = -1;
};

tap_settings echoing() { return {ECHO_PROGRAM, false, default_capture_mib}; }

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(tap, hands_on_any_bytes_the_arguments_and_the_exit_value) {
  std::mt19937 random(1);
  std::string noise(3'000'000, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  const std::string good = request(page_request), cut = good.substr(0, 30);
  for (const std::string& input : {""s, noise, good + cut, make_frame("no envelope") + good}) {
    const recording made(echoing());
    const session through(made.program(), {"42", "chrome-extension://x/"}, input);
    EXPECT_EQ(through.exit_value, 42);
    EXPECT_TRUE(through.output == input) << through.output.size() << " of " << input.size();
    const lines kept = made.captured();
    ASSERT_FALSE(kept.empty());
    EXPECT_TRUE(contains(kept.front(), R"("arguments":["42","chrome-extension://x/"])"));
    EXPECT_EQ(kept.back(), R"({"kind":"end","exit":42})");
  }
}

TEST(tap, keeps_what_went_by_without_secrets_and_for_its_user_alone) {
  const std::string good = request(page_request);
  const std::string input = good + make_frame("no envelope") + good.substr(0, 9);
  for (const bool with_values : {false, true}) {
    tap_settings told;
    told.with_values = with_values;
    const recording made(told, "post deliver " + pushed_url);
    EXPECT_EQ(session(made.program(), {}, input).exit_value, 0);
    const lines kept = made.captured();
    ASSERT_EQ(kept.size(), 6u);
    const std::string source =
        with_values ? "https://ann:pw@a.example/in?k=1#f" : "https://a.example/in";
    const std::string value = with_values ? "hunter2" : "<hidden 7>";
    EXPECT_EQ(kept[1], R"({"kind":"message","from":"browser","frames":1,"sizes":[[)" +
                           std::to_string(good.size() - 4) +
                           R"(,1]],"message":{"method":"get-info-for-page","data":{"source":")" +
                           source + R"(","inputs":[{"name":"pw","value":")" + value + R"("}]}}})");
    EXPECT_TRUE(
        contains(kept[2] + kept[3], R"("from":"browser","bytes":11,"reason":"no envelope)"));
    EXPECT_TRUE(contains(kept[2] + kept[3], with_values ? R"("url":"pages/sign-in?k=2")"
                                                        : R"("url":"pages/sign-in")"));
    EXPECT_TRUE(contains(kept[4], R"("from":"browser","bytes":9,"reason":"the stream ends)"));
    EXPECT_EQ(kept[5], R"({"kind":"end","exit":0})");
    EXPECT_TRUE(is_private(made.capture()));
  }
}

TEST(tap, ends_a_record_at_its_limit_and_not_the_traffic) {
  std::string input;
  while (input.size() < 4'000'000) input += request(page_request);
  tap_settings told = echoing();
  told.limit_mib = 1;
  const recording made(told);
  // Waits for the recording, since the end of the program doesn't wait long.
  const auto recorded = [&made] {
    const auto due = std::chrono::steady_clock::now() + 20s;
    const auto size = [&made] {
      return made.capture().empty() ? 0 : fs::file_size(made.capture());
    };
    while (size() < 1'000'000 && std::chrono::steady_clock::now() < due) {
      std::this_thread::sleep_for(5ms);
    }
  };
  EXPECT_EQ(session(made.program(), {}, input, recorded).output.size(), input.size());
  EXPECT_GT(fs::file_size(made.capture()), 1'000'000u);
  EXPECT_LE(fs::file_size(made.capture()), 1u << 20);
  EXPECT_TRUE(contains(made.captured().back(), R"("reason":"the capture has reached its limit")"));
}

TEST(tap, hands_on_what_it_can_not_record) {
  const std::string input = request(page_request) + request(page_request);
  const recording untold(echoing());
  fs::remove(untold.folder / tap_settings_name);
  // There is no host beside it either.
  EXPECT_EQ(session(untold.program(), {}, input).exit_value, 125);
  fs::copy_file(ECHO_PROGRAM, untold.folder / HOST_NAME);
  EXPECT_EQ(session(untold.program(), {}, input).output, input);
  EXPECT_TRUE(untold.capture().empty());

  const recording full(echoing());
  const no_room_in_files lack;
  if (!lack.possible) return;
  EXPECT_EQ(session(full.program(), {"3"}, input).exit_value, 3);
}

TEST(tap, ends_with_its_host_and_its_host_with_it) {
  for (const bool asked : {false, true}) {
    const recording made({}, "register deliver " + pushed_url + (asked ? "" : "\npost leave 7"));
    std::string error;
    const auto tap = platform::child_process::start(made.program().string(), {}, error);
    ASSERT_NE(tap, nullptr) << error;
    const std::string sent = request(R"({"method":"get-settings"})");
    char bytes[1000];
    EXPECT_NE(tap->read(bytes, sizeof bytes, 20s).value_or(0), 0u);
    if (!asked) tap->write(sent.data(), sent.size());
    if (asked && !ask_to_end(*tap)) continue;
    EXPECT_EQ(tap->read(bytes, sizeof bytes, 20s), 0u);
    EXPECT_EQ(tap->wait(20s), asked ? 128 + 15 : 7);
    const std::string end = R"({"kind":"end","exit":)";
    const lines kept = made.captured();
    ASSERT_FALSE(kept.empty());
    EXPECT_EQ(kept.back(), end + (asked ? "143}" : "7}"));
    if (asked) continue;
    EXPECT_EQ(run_program(EXT_PROGRAM, {"--replay", made.capture().string()}).exit_value, 0);
  }
}

TEST(tap, a_capture_can_be_shown_and_played_again) {
  const recording made({}, "post deliver " + pushed_url + "\n");
  const std::string input = request(page_request) + request(R"({"method":"get-settings"})");
  EXPECT_EQ(session(made.program(), {}, input).exit_value, 0);
  const std::string capture = made.capture().string();
  const outcome shown = run_program(EXT_PROGRAM, {"--decode", capture});
  EXPECT_EQ(shown.exit_value, 0);
  EXPECT_TRUE(contains(shown.text, R"( > {"method":"get-settings"})")) << shown.text;
  EXPECT_TRUE(contains(shown.text, " # the host ended with exit value 0")) << shown.text;

  const struct {
    std::string script;
    int exit_value;
    const char* report;
  } cases[] = {
      {"post deliver " + pushed_url, 0, "2 answers recorded, 0 differences"},
      {"post deliver " + hex(u"msg::CfMsgOpenUrl\0c3d4\0pages/sign-in?k=5\0"sv), 0,
       "0 differences"},
      {"post deliver " + hex(u"msg::CfMsgOpenUrl\0a1b2\0pages/other\0"sv), 1, "open-url 2 differs"},
      {"", 1, "coffer-open-url 1 doesn't come"},
      {"post deliver data\npost deliver " + pushed_url, 1, "coffer-init-data 1 wasn't recorded"},
      {"post deliver " + pushed_url + "\nunload leave 5", 1, "recorded 0, now 5"},
  };
  for (const auto& c : cases) {
    made.write_script(c.script);
    const outcome played = run_program(
        EXT_PROGRAM, {"--replay", capture, "--wait", "700", "--host", made.host().string()});
    EXPECT_EQ(played.exit_value, c.exit_value) << c.script;
    EXPECT_TRUE(contains(played.text, c.report)) << c.script << '\n' << played.text;
  }
}
