// What the companion programs tell people.
#include "tests/end_to_end/machine.h"
#include "tools/method_advice.h"
#include "tools/printable.h"

TEST(setup, names_the_method_that_is_meant) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"method":"get-setings"})", "is \"get-settings\" meant?"},
      {R"({"method":"Drop-Down","data":{}})", "is \"drop-down\" meant?"},
      {R"({"method":"x"})", "known are get-info-for-page, "},
      {R"({"data":1})", "asks for no method"}};
  for (const auto& [request, advice] : cases) {
    EXPECT_NE(method_advice(request).find(advice), std::string::npos) << method_advice(request);
  }
  for (const char* const good : {R"({"method":"get-settings"})", R"({"method":)", ""}) {
    EXPECT_EQ(method_advice(good), "") << good;
  }
}

TEST_F(setup_in_root, programs_say_what_they_can_not_use) {
  const struct {
    lines command;
    int exit_value;
    const char* text;
  } cases[] = {
      {{EXT_PROGRAM, "--version"}, 0, "cfext "},
      {{DEBUG_PROGRAM, "--version"}, 0, "cfdebug "},
      {{EXT_PROGRAM, "-h"}, 0, "Usage: "},
      {{DEBUG_PROGRAM, "-h"}, 0, "Usage: "},
      {{EXT_PROGRAM, "--host=" + m.host().string(), R"({"method":"get-setings"})"}, 0, "meant?"},
      {{SETUP_PROGRAM, "doctor", "--host", "/x"}, 2, "--host"},
      {{SETUP_PROGRAM, "list", "--extension-id", id}, 2, "--extension-id"},
      {{SETUP_PROGRAM, "list", "--browser", "x"}, 2, "known are chrome, "},
      {{SETUP_PROGRAM, "list", "--browser", "firefox", "--user-data-dir", "/x"}, 2, "Firefox"},
  };
  for (auto [command, exit_value, text] : cases) {
    command.insert(command.begin(), {"-c", "\"$0\" \"$@\" 2>&1"});
    const outcome said = run_program("/bin/sh", command);
    EXPECT_EQ(said.exit_value, exit_value) << said.text;
    EXPECT_NE(said.text.find(text), std::string::npos) << text << " in " << said.text;
  }
}

// The configuration and the channel are those of all hosts of a build.
TEST(diagnostics, viewer_says_when_nothing_will_come) {
  if (registration_options({}).empty()) GTEST_SKIP() << "there is no shell";
  open_debug_channel();
  const std::pair<const char*, const char*> cases[] = {
      {"", "has no \"dump\""}, {"Dump = true", "the value \"true\""}, {"dump=1", nullptr}};
  for (const auto& [line, text] : cases) {
    write_configuration(std::string("[coffer]\n") + line + '\n');
    const std::string said =
        run_program("/bin/sh", {"-c", "timeout -s INT 1 " DEBUG_PROGRAM " 2>&1"}).text;
    if (text == nullptr) {
      EXPECT_EQ(said, "") << line;
    } else {
      EXPECT_NE(said.find(text), std::string::npos) << said;
    }
  }
  write_configuration("");
}

TEST(terminal, is_shown_text_and_no_commands) {
  EXPECT_EQ(printable_line("a\tb\x1B\x7F \x9B"
                           "c \xC2\x9B \xC3\xA9 \xE2\x80\xAE \xE2\x82\xAC \xE2\x80"),
            "a b\\u001b\\u007f \\u009bc \\u009b \xC3\xA9 \\u202e \xE2\x82\xAC \\u00e2\\u0080");
}
