// What a library hands to `notify`, looked at more closely than the host does.
#pragma once

#include "messages/message.h"
#include "tools/examination_child.h"

// Tells what is wrong with the object, its records and its payload. Reads like the host, but
// nothing that isn't there.
void examine_notified_object(iCfMsg* object, account& told);
