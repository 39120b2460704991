// The messages that don't carry a page.
#pragma once

#include "messages/message.h"
#include "messages/settings.h"
#include "messages/window_position.h"

// A URL that the agent wants opened. Inbound.
class CfMsgOpenUrl final : public message_of<CfMsgOpenUrl, iCfMsg> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgOpenUrl"};

  wide_string uuid;  // sent to the extension with the URL
  wide_string url;

  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

enum console_code : std::uint32_t {
  console_open = 1,
  console_configure = 3,
  console_settings = 5,
};

// Asks for the console.
class CfMsgRunConsole final : public message_of<CfMsgRunConsole, CfMsgNpcomm> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgRunConsole"};

  std::uint32_t consoleCode;
  wide_string consoleText1;
  wide_string consoleText2;

  explicit CfMsgRunConsole(std::uint32_t code) : consoleCode(code) {}
  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

// Asks for the settings. Has no form: the library takes the object itself.
class CfMsgGetSettings final : public message_of<CfMsgGetSettings, iCfMsg> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgGetSettings"};

  CfSettings settings;
  CfSettings settings2;
  CfDummySettings defaults;
};

// A command to the store; by default, to lock it.
class CfMsgCfDbCmd final : public message_of<CfMsgCfDbCmd, CfMsgNpcomm> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgCfDbCmd"};

  std::uint32_t command = 5;
  wide_string dbText1;
  wide_string dbText2;
  wide_string dbText3;
  std::uint32_t dbArg1 = 0;
  std::uint32_t dbArg2 = UINT32_MAX;

  CfMsgCfDbCmd() { npAux = 30000; }
  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

// Asks for the store to be unlocked, in a dialog at `pos`.
class CfMsgUnLockDb final : public message_of<CfMsgUnLockDb, CfMsgNpcomm> {
 public:
  static constexpr cfName type_name{u"msg::CfMsgUnLockDb.1"};

  wide_string unlockText1;
  wide_string unlockText2;
  std::uint32_t unlockArg = 0;
  CfWndPos pos;

  bool write(cfOStream& s) override;
  bool read(cfIStream& s) override;
};

message_ref<CfMsgRunConsole> make_run_console(std::uint32_t code);
message_ref<CfMsgGetSettings> make_get_settings();
message_ref<CfMsgUnLockDb> make_unlock_db();
