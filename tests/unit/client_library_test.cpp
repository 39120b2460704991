#include "messages/loader/client_library.h"

#include "tests/unit/support.h"

namespace {

struct ClientLibrary : quiet_test {
  ~ClientLibrary() override { unload_client_library(); }
};

cfApi* no_root() { return nullptr; }

TEST_F(ClientLibrary, IsLoadedOnceIfItHasItsEntry) {
  EXPECT_FALSE(load_client_next_to(platform::own_module()));
  EXPECT_EQ(fake::system().loaded_path, u"/own/cfagent");
  EXPECT_EQ(fake::system().unloaded, 0);
  fake::system().library = &fake::system();
  EXPECT_FALSE(load_client_library(u"without entry"));
  EXPECT_EQ(fake::system().unloaded, 1);
  EXPECT_TRUE(client_library.module == nullptr && client_library.path == u"without entry");
  fake::system().entry = reinterpret_cast<void*>(no_root);
  EXPECT_TRUE(load_client_library(u"first"));
  EXPECT_FALSE(load_client_library(u"second"));
  EXPECT_TRUE(client_library.module == &fake::system() && client_library.path == u"second");
  EXPECT_EQ(fake::system().loaded_path, u"first");
  unload_client_library();
  EXPECT_TRUE(client_library.module == nullptr && client_library.path.empty());
}

}  // namespace
