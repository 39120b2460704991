#include "agent/user_field.h"

int fitness_for_user(field_kind kind) {
  switch (kind) {
    case field_kind::user_name:
      return 4;
    case field_kind::email:
      return 3;
    case field_kind::account:
    case field_kind::phone:
      return 2;
    case field_kind::other:
      return 1;
    default:
      return 0;
  }
}
