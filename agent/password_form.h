// Forms that ask for a password.
#pragma once

#include "agent/form_view.h"

// The kind of a form with at least one password. Where the password of an account there is asked
// for it becomes the form's.
page_kind kind_with_password(const form_view& view);
