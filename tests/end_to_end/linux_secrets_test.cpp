// What an idle host still holds of the passwords that went through it, and what a crash reveals.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/end_to_end/tested_host.h"
#include "transport/codecs/base64.h"

using namespace std::literals;

namespace {

// One fits inside a string object, the other doesn't.
const std::string secrets[] = {"Tr0ub4d&3Q", "correct-horse-battery-staple"};

std::string wide(std::string_view text) {
  std::string bytes;
  for (const char c : text) bytes += {c, '\0'};
  return bytes;
}

// The base64 text of a secret after `shift` bytes, without the parts that depend on its neighbours.
std::string base64_core(const std::string& secret, std::size_t shift) {
  const std::string text = std::string(shift, ' ') + secret;
  char encoded[64] = {};
  std::int32_t length = sizeof encoded;
  base64_encode(text.data(), static_cast<std::int32_t>(text.size()), encoded, &length);
  return std::string(encoded).substr(4, text.size() / 3 * 4 - 4);
}

// The forms of the secrets that are found in the memory of the process.
std::string found_in(std::int64_t process) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::ifstream maps(folder + "/maps"), memory(folder + "/mem", std::ios::binary);
  std::string all, found;
  for (std::string line; std::getline(maps, line);) {
    std::istringstream words(line);
    std::uint64_t first = 0, end = 0;
    char dash = 0;
    words >> std::hex >> first >> dash >> end;
    if (line.find(" rw") == line.npos) continue;
    std::string bytes(end - first, '\0');
    memory.clear();
    memory.seekg(static_cast<std::streamoff>(first)).read(bytes.data(), std::ssize(bytes));
    all += bytes;
  }
  EXPECT_GT(all.size(), 100'000U);
  for (const std::string& secret : secrets) {
    if (all.find(secret) != all.npos) found += " narrow " + secret;
    if (all.find(wide(secret)) != all.npos) found += " wide " + secret;
    for (std::size_t shift = 0; shift < 3; ++shift) {
      if (all.find(base64_core(secret, shift)) != all.npos) found += " base64 " + secret;
    }
  }
  return found;
}

}  // namespace

TEST(secrets, are_gone_from_an_idle_host) {
  std::string script = "blind\n", inputs;
  for (const std::string& secret : secrets) {
    std::string payload = wide("msg::CfMsgOpenUrl\0"s + secret + '\0' + secret + '\0');
    for (char& c : payload) c = static_cast<char>(~c);
    script += "post deliver " + to_hex(payload) + " masked\n";
    inputs += R"({"name":"pass","value":")" + secret + R"(","id":"\t)" + secret + "\"},";
  }
  tested_host host(script);
  const auto page = R"({"method":"get-info-for-page","data":{"sender":")" + secrets[0] +
                    R"(","inputs":[)" + inputs + "]}}";
  request_cutter cutter(page, "id", 200);
  std::string envelope;
  while (cutter.next(envelope) && envelope.find("final") == envelope.npos) {
    host.send(make_frame(envelope));
  }
  const std::int64_t process = host.process().process_id();
  const auto wait_until_found = [process](bool wanted) {
    std::string found = found_in(process);
    for (int i = 0; i < 200 && found.empty() == wanted; ++i) {
      std::this_thread::sleep_for(10ms);
      found = found_in(process);
    }
    return found;
  };
  EXPECT_NE(wait_until_found(true), "")
      << "This host must still hold what has come of the message.";
  // More than the input's buffer holds, so that its last fill doesn't cover the earlier ones.
  std::string many, burst;
  while (many.size() < 3500) many += secrets[1];
  while (burst.size() < 200'000) burst += request(R"({"method":"none","data":")" + many + "\"}");
  host.send(burst);
  host.send(make_frame(envelope));
  for (const std::string& text : host.replies(2)) EXPECT_NE(text.find(secrets[1][0]), text.npos);
  EXPECT_EQ(wait_until_found(false), "");
  EXPECT_EQ(host.finish(), 0);
}

TEST(secrets, are_in_no_dump_of_a_crash) {
  rlimit limit{};
  getrlimit(RLIMIT_CORE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_CORE, &limit);
  const auto folder = make_folder();
  std::filesystem::current_path(folder);
  tested_host host("post deliver data");
  host.send(request(R"({"method":"lock-coffer"})"));
  EXPECT_EQ(host.replies(1).size(), 1U);
  const std::int64_t process = host.process().process_id();
  std::string filter;
  std::ifstream("/proc/" + std::to_string(process) + "/coredump_filter") >> filter;
  EXPECT_EQ(filter, "00000000");
  kill(static_cast<pid_t>(process), SIGSEGV);
  EXPECT_EQ(host.process().wait(20s), 128 + SIGSEGV);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  std::filesystem::current_path(folder.parent_path());
  std::filesystem::remove_all(folder);
}
