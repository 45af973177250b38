#include "parties/role.h"

#include <algorithm>

#include "frame/ansi_text.h"

namespace qlx99 {
namespace {

using Codes = std::string_view;

constexpr Codes kClient[] = {"2 ", "25"};
constexpr Codes kOpponent[] = {"0 "};
constexpr Codes kOpposingCounsel[] = {"13"};
constexpr Codes kCourt[] = {"30", "31", "32"};
constexpr Codes kClientsRepresentative[] = {"18", "19", "20", "21", "22", "23", "24", "28"};
constexpr Codes kOpponentsRepresentative[] = {"6 ", "7 ", "8 ", "9 ", "10", "11", "12", "16"};
constexpr Codes kClientsLegalInsurer[] = {"27"};
constexpr Codes kOpponentsLiabilityInsurer[] = {"14"};

constexpr std::string_view kAnyParty = "  ";

constexpr Role kRoles[] = {
    {"M ", u8"Mandant auswählen"_ansi, kClient},
    {"G ", u8"Gegner auswählen"_ansi, kOpponent},
    {"V ", u8"Gegenanwalt auswählen"_ansi, kOpposingCounsel},
    {"C ", u8"Gericht auswählen"_ansi, kCourt},
    {u8"§M"_ansi, u8"gesetzlicher Vertreter Mandant auswählen"_ansi, kClientsRepresentative},
    {u8"§G"_ansi, u8"gesetzlicher Vertreter Gegner auswählen"_ansi, kOpponentsRepresentative},
    {"RM", u8"Rechtschutzversicherung Mandant auswählen"_ansi, kClientsLegalInsurer},
    {"HG", u8"Haftpflichtversicherung Gegner auswählen"_ansi, kOpponentsLiabilityInsurer},
    {kAnyParty, u8"Adressat auswählen"_ansi, {}},
};

constexpr Role kNoRole{"", u8"Adressat auswählen"_ansi, {}};

}  // namespace

const Role& RoleOf(std::string_view code) {
  const auto* const found =
      std::ranges::find_if(kRoles, [code](const Role& role) { return role.code == code; });
  return found == std::ranges::end(kRoles) ? kNoRole : *found;
}

bool RelationCounts(const Role& role, std::string_view relationCode) {
  if (role.code == kAnyParty) return true;
  return std::ranges::find(role.relationCodes, relationCode) != role.relationCodes.end();
}

}  // namespace qlx99
