// The layouts that cross the boundary to the client library, checked with every compiler that
// builds the host. docs/messages.md shows them as tables.

#include <cstddef>

#include "messages/agent_interface.h"
#include "messages/commands.h"
#include "messages/website.h"

// Classes with virtual functions aren't standard-layout types, for which the compilers support
// offsetof only with a warning.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

// A friend of the classes whose fields are private.
struct message_layout {
  static_assert(sizeof(void*) == 8 && sizeof(wide_string) == 32 && sizeof(cfName) == 8);

  static_assert(offsetof(iCfMsg, refs) == 8 && sizeof(iCfMsg) == 16);
  static_assert(offsetof(CfMsgNpcomm, npTag) == 16 && offsetof(CfMsgNpcomm, npAux) == 20);
  static_assert(offsetof(CfMsgNpcomm, npCookie) == 24 && sizeof(CfMsgNpcomm) == 32);

  static_assert(offsetof(CfMsgWebsite, guard) == 32 && offsetof(CfMsgWebsite, sender) == 40);
  static_assert(offsetof(CfMsgWebsite, auxText) == 72 && offsetof(CfMsgWebsite, props) == 104);
  static_assert(offsetof(CfMsgWebsite, inputs) == 144 && offsetof(CfMsgWebsite, pos) == 168);
  static_assert(offsetof(CfMsgOpenUrl, uuid) == 16 && offsetof(CfMsgOpenUrl, url) == 48);
  static_assert(offsetof(CfMsgRunConsole, consoleCode) == 32);
  static_assert(offsetof(CfMsgRunConsole, consoleText1) == 40);
  static_assert(offsetof(CfMsgRunConsole, consoleText2) == 72);
  static_assert(offsetof(CfMsgGetSettings, settings) == 16);
  static_assert(offsetof(CfMsgGetSettings, settings2) == 56);
  static_assert(offsetof(CfMsgGetSettings, defaults) == 96);
  static_assert(offsetof(CfMsgCfDbCmd, command) == 32 && offsetof(CfMsgCfDbCmd, dbText1) == 40);
  static_assert(offsetof(CfMsgCfDbCmd, dbText2) == 72 && offsetof(CfMsgCfDbCmd, dbText3) == 104);
  static_assert(offsetof(CfMsgCfDbCmd, dbArg1) == 136 && offsetof(CfMsgCfDbCmd, dbArg2) == 140);
  static_assert(offsetof(CfMsgUnLockDb, unlockText1) == 32);
  static_assert(offsetof(CfMsgUnLockDb, unlockText2) == 64);
  static_assert(offsetof(CfMsgUnLockDb, unlockArg) == 96 && offsetof(CfMsgUnLockDb, pos) == 104);

  static_assert(offsetof(CfWndPos, flags) == 8 && offsetof(CfWndPos, x) == 12);
  static_assert(offsetof(CfWndPos, y) == 16 && sizeof(CfWndPos) == 24);

  static_assert(offsetof(cfIStream, begin) == 8 && offsetof(cfIStream, end) == 16);
  static_assert(offsetof(cfIStream, cursor) == 24 && offsetof(cfIStream, ok) == 32);
  static_assert(sizeof(cfIStream) == 40);
  static_assert(offsetof(cfOStream, sink) == 8 && offsetof(cfOStream, ok) == 17);

  static_assert(offsetof(propsW_t, map_) == 8 && sizeof(propsW_t) == 40);
  static_assert(offsetof(CfSettings, map_) == 8 && sizeof(CfSettings) == 40);
  static_assert(sizeof(CfDummySettings) == 40);
  static_assert(offsetof(propsW_t::const_iterator, position_) == 16);
  static_assert(sizeof(propsW_t::const_iterator) == 24);
  static_assert(offsetof(CfSettings::const_iterator, position_) == 16);
  static_assert(sizeof(CfSettings::const_iterator) == 24);
  static_assert(offsetof(text_map, pairs_) == 0 && offsetof(text_map, size_) == 8);
  static_assert(offsetof(text_map::pair, key) == 0 && offsetof(text_map::pair, value) == 8);
  static_assert(offsetof(text_map::pair, key_length) == 16);
  static_assert(offsetof(text_map::pair, value_length) == 20 && sizeof(text_map::pair) == 32);

  static_assert(offsetof(npc_packet, length) == 84 && sizeof(npc_packet) == 88);
  static_assert(offsetof(npc_record, packet) == 24);
  static_assert(offsetof(coffer_data_record, fUpdate) == 32);
  static_assert(offsetof(coffer_data_record, flags) == 36);
  static_assert(offsetof(coffer_data_record, agPid) == 40);
  static_assert(offsetof(coffer_data_record, agStatus) == 44);
  static_assert(offsetof(coffer_data_record, settings) == 48);
  static_assert(offsetof(coffer_data_record, default_settings) == 88);
  static_assert(offsetof(coffer_data_record, dbStatus) == 128);
  static_assert(offsetof(set_values_record, has_settings) == 16);
  static_assert(offsetof(set_values_record, settings) == 24);
};
