// The host with libraries that other compilers made from the documented tables alone. Each examines
// everything that is posted, and reports at the end what was wrong.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/end_to_end/tested_host.h"

namespace {

const std::string page =
    R"({"sender":"tab-12","after-url":"","before-url":"","click-source":"","context":"",)"
    R"("document-state":"","source":"page-url","source-context":"","source-event":"",)"
    R"("submit-source":"","title":"Sign in","user-state":"","inputs":[{"name":"email","value":"",)"
    R"("type":"text","id":"e1","readonly":"","context":"","form_context":"","dbSchema":"",)"
    R"("dbvalue":""}],"dbItems":[]}})";

lines libraries() {
  lines all;
  std::istringstream list(FOREIGN_LIBRARIES);
  for (std::string path; std::getline(list, path, ',');) all.push_back(path);
  return all;
}

}  // namespace

TEST(foreign_libraries, find_all_that_the_tables_promise) {
  for (const std::string& library : libraries()) {
    SCOPED_TRACE(library);
    tested_host host({}, library);
    const std::string data = R"({"sender":"tab-12","source":"page-url","title":"Sign in",)"
                             R"("inputs":[{"name":"email","type":"text","id":"e1"}]}})";
    host.send(request(R"({"method":"get-info-for-page","data":)" + data));
    host.send(request(R"({"method":"save-info-from-page","data":)" + data));
    for (const char* const rest :
         {R"("drop-down","data":null})", R"("open-coffer"})", R"("open-settings"})",
          R"("configure-coffer"})", R"("get-settings"})", R"("unlock-coffer"})",
          R"("lock-coffer"})"}) {
      host.send(request(std::string(R"({"method":)") + rest));
    }
    const std::string data_text =
        R"({"coffer-init-data":{"fUpdate":1,"flags":-2,"agPid":4242,"agStatus":2,"dbStatus":-1,)"
        R"("settings":{"pwdman.enabled":"true"},"default_settings":{}}})";
    const lines expected = {R"({"coffer_info_update":)" + page,
                            R"({"page_input_update":)" + page,
                            R"({"navigate_login":)" + page,
                            R"({"coffer-open-url":{"url":"pages/sign-in","uuid":"a1b2"}})",
                            data_text,
                            R"({"coffer-set-settings":{"pwdman.enabled":"true"}})",
                            R"({"coffer-set-settings":{"failed":"0","first":"none"}})"};
    EXPECT_EQ(host.replies(expected.size()), expected);
    EXPECT_EQ(host.finish(), 0);
  }
}
