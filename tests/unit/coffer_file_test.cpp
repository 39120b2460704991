// What the development agent makes of its file, and what it says about one that it can't use.
#include "agent/coffer_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "agent/public_suffix.h"
#include "tests/unit/table.h"
#include "tests/unit/wide.h"

namespace {

namespace fs = std::filesystem;

// What is said about the file, without its folder; for a good one the password for "https://a:1/b".
std::string outcome(const fs::path& file) {
  coffer filled;
  std::string problem;
  if (!load_coffer(file, filled, problem)) {
    const std::size_t folder = problem.find(file.parent_path().string() + '/');
    return folder == problem.npos ? problem : problem.erase(folder, file.string().rfind('/') + 1);
  }
  if (filled.locked()) return "locked";
  const login* const found = filled.find(u"https://a:1/b");
  if (found == nullptr) return filled.find(u"https://example.com/") != nullptr ? "demo" : "empty";
  return std::string(found->password.begin(), found->password.end());
}

}  // namespace

TEST(CofferFile, IsUsedWholeOrComplainedOf) {
  std::string folder = testing::TempDir() + "coffer-file-XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const fs::path file = fs::path(folder) / "f";
  EXPECT_EQ(outcome(file), "demo");
  const std::pair<std::string, const char*> cases[] = {
      {"{}", "empty"},
      {R"({"explain":true,"logins":[{"site":"HTTPS://u@a:1/x","password":"p"}]})", "p"},
      {R"({"locked":true,"logins":[{"site":"a","password":"p"}],"settings":{"k":"v"}})", "locked"},
      {" \n", "f:2:1: the file is empty"},
      {"[]", "f:1:1: an object is needed here"},
      {std::string("{}\0", 3), "f:1:3: a NUL byte can't be part of the file"},
      {"{\n \"locked\":1}", "f:2:3: true or false is needed here"},
      {R"({"logins":[{"site":"a"}]})", "f:1:14: a login needs a site and a password"},
      {R"({"logins":[{"site":"a","password":"p"},{"site":"A","password":"q"}]})",
       "f:1:42: there is a login for this site already"},
      {R"({"logins":[{"site":"ftp://a","password":"p"}]})",
       "f:1:14: a login needs a site and a password"},
      {R"({"logins":[{"site":"co.uk","password":"p","subdomains":true}]})",
       "f:1:14: the subdomains of this site belong to different people"},
      {R"({"settings":{"":"v"}})", "f:1:15: a setting needs a name"},
      {R"({"secret":1})", "f:1:3: unknown member; known are locked, explain, settings and logins"},
      {std::string((1 << 20) + 1, ' '), "f is longer than 1048576 bytes"}};
  for (const auto& [content, expected] : cases) {
    std::ofstream(file, std::ios::binary) << content;
    EXPECT_EQ(outcome(file), expected) << content.substr(0, 99);
  }
  fs::remove(file);
  fs::create_directory(file);
  EXPECT_EQ(outcome(file), "can't read f: Is a directory");
  fs::remove(file);
  // A pipe that nobody writes to must not hold the host up.
  EXPECT_EQ(mkfifo(file.c_str(), 0600), 0);
  EXPECT_EQ(outcome(file), "f:1:1: the file is empty");
  fs::remove_all(folder);
}

// "site page ..." => "yes" for each page that gets the site's login; '+' before a site includes its
// subdomains.
TEST(Coffer, HasALoginForItsOriginAndWhatTheSiteShares) {
  check_file(
      [](const std::string& row) {
        std::istringstream words(row);
        std::string word, answers;
        words >> word;
        const bool shared = word[0] == '+';
        coffer store;
        const auto site = origin_of_site(wide(word.substr(shared)));
        if (!site || (shared && is_public_suffix(site->host))) return std::string("refused");
        store.store(*site, {u"u", u"p", shared});
        while (words >> word) answers += store.find(wide(word)) != nullptr ? "yes " : "no ";
        return answers.substr(0, answers.size() - 1);
      },
      PAGES "/origins.txt");
}
