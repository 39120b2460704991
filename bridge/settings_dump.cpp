#include "bridge/settings_dump.h"

#include "host/diagnostics/diagnostics.h"

void dump_settings(const text_map& pairs, const wide_char* prefix) {
  if (dump_off) return;
  if (pairs.empty()) log_line_w(u"%scount=0", prefix);
  for (const text_map::pair& p : pairs) log_line_w(u"%s%s=%s", prefix, p.key, p.value);
}
