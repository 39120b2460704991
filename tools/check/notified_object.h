// Examines what a library hands to `notify` more closely than the host does.
#pragma once

#include "messages/message.h"
#include "tools/examination_child.h"

// Reports what is wrong with the object, its records and its payload. Reads them like the host, but
// never reads memory that isn't there.
void examine_notified_object(iCfMsg* object, account& told);
