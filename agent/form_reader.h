// Turns what the host posts into messages owned by the library.
#pragma once

#include <cstddef>

#include "messages/library/received_object.h"

// Asks the posted message for its form and returns a copy read back from those bytes. Takes over
// the caller's reference: the posted object isn't touched after the call. Null for a message that
// can't be copied, because its type isn't known here or its form isn't whole. `form_size` receives
// the number of bytes in the form.
owned_message take_message(iCfMsg* posted, std::size_t& form_size);
