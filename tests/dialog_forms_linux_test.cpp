// The dialogs as the office knows them, read from the library's own resources: after the texts come
// places, sizes and styles.
#include <gtest/gtest.h>

#include <sstream>

#include "platform/dialog_template.h"
#include "platform/resources.h"
#include "resources/resource.h"
#include "support/text.h"
#include "testkit/embedded_manager.h"
#include "testkit/process.h"

namespace qlx99::tests {
namespace {

std::ostream& operator<<(std::ostream& out, const platform::Place& place) {
  return out << place.x << "," << place.y << " " << place.width << "x" << place.height;
}

std::string Hexadecimal(DWORD style) {
  std::ostringstream out;
  out << " " << std::hex << style;
  return out.str();
}

std::string TextOf(HMODULE library, WORD id) {
  constexpr WORD kDialogs = 5;
  const auto form = platform::ParseDialogTemplate(platform::FindResourceOf(library, kDialogs, id));
  if (!form) return "broken";
  std::ostringstream out;
  out << '"' << Utf8(form->title) << "\" " << form->place << Hexadecimal(form->style) << ", "
      << Utf8(form->font) << " " << form->fontSize << "\n";
  for (const auto& control : form->controls) {
    out << control.id << " " << Utf8(control.windowClass) << " \"" << Utf8(control.text) << "\" "
        << control.place << Hexadecimal(control.style) << "\n";
  }
  return out.str();
}

TEST(DialogForms, AreTheOnesThatTheOfficeKnows) {
  HMODULE library =
      LoadLibraryA((testkit::ProductFolder() / testkit::LibraryFile("qlx99")).string().c_str());
  EXPECT_EQ(TextOf(library, IDD_BANK_CHOICE),
            R"("Bankverbindung auswählen" 19,23 240x114 90c808c4, MS Sans Serif 8
1 BUTTON "&Übernehmen" 180,85 50x14 50010300
501 STATIC "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! " 8,4 220x22 50020000
502 STATIC "Bitte wählen Sie eine Bankverbindung aus." 8,22 220x10 50020000
403 LISTBOX "" 8,32 164x76 50b100c1
601 LISTBOX "Listbox2" 176,32 50x35 40a10041
)");
  EXPECT_EQ(TextOf(library, IDD_CONTACT_CHOICE),
            R"("Ansprechpartner auswählen" 0,0 240x119 90c808c4, MS Sans Serif 8
1 BUTTON "&Übernehmen" 180,92 50x14 50010300
501 STATIC "Zum ausgewählten Adressant wurden mehrere Ansprechpartner angelegt ! " 8,4 220x22 50020000
502 STATIC "Bitte wählen Sie einen Ansprechpartner aus." 8,22 220x10 50020000
303 LISTBOX "" 8,32 164x84 50b100c1
701 LISTBOX "Listbox2" 176,30 52x34 40a10041
)");
  EXPECT_EQ(TextOf(library, IDD_PARTY_SELECTION),
            R"("" 0,0 344x183 90c00844, MS Sans Serif 8
105 STATIC "Aktennummer:" 8,9 56x8 50020000
206 EDIT "" 68,9 60x12 50800880
107 STATIC "Rubrum:" 8,26 44x8 50020000
208 EDIT "" 68,26 196x12 50800880
503 STATIC "Beteiligte zur Akte:" 6,44 60x8 50020000
201 LISTBOX "" 4,52 332x104 50b100c1
104 STATIC "Beziehungen zum Beteiligten:" 8,125 100x8 40020000
202 LISTBOX "" 4,134 272x14 408000c1
1 BUTTON "&Übernehmen" 225,160 50x14 50010300
2 BUTTON "Abbruch" 285,160 50x14 50010300
301 LISTBOX "" 284,0 50x24 40800041
401 LISTBOX "" 284,24 52x16 40800041
)");
  FreeLibrary(library);
}

}  // namespace
}  // namespace qlx99::tests
