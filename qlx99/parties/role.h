// Roles: what a macro asks for ("M ", the client), and the relations that count as it.
#pragma once

#include <span>
#include <string_view>

namespace qlx99 {

struct Role {
  std::string_view code;  // as macros pass it, two characters
  const char* dialogTitle;
  std::span<const std::string_view> relationCodes;  // two characters each, blanks included
};

// The role with this code; for any other text, one that no relation counts as.
const Role& RoleOf(std::string_view code);

// Whether a party whose relation has this code is in the role.
bool RelationCounts(const Role& role, std::string_view relationCode);

}  // namespace qlx99
