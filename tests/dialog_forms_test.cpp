// The dialogs as the office knows them, read from the library's own resources.
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

struct StyleWord {
  const char* windowClass;  // null: of every control and dialog
  DWORD bits;
  const char* word;
};

constexpr const char* kDialog = "";

constexpr StyleWord kStyleWords[] = {
    {nullptr, 0x10000000, "visible"}, {kDialog, 0x80000000, "popup"},
    {kDialog, 0x00C00000, "caption"}, {kDialog, 0x00080000, "close-box"},
    {kDialog, 0x0080, "modal-frame"}, {kDialog, 0x0004, "3d-look"},
    {kDialog, 0x0800, "centred"},     {nullptr, 0x00800000, "border"},
    {nullptr, 0x00200000, "vscroll"}, {nullptr, 0x00100000, "hscroll"},
    {nullptr, 0x00010000, "tab"},     {"BUTTON", 0x0300, "centred"},
    {"BUTTON", 0x0001, "default"},    {"EDIT", 0x0800, "read-only"},
    {"LISTBOX", 0x0001, "notify"},    {"LISTBOX", 0x0002, "sort"},
    {"LISTBOX", 0x0040, "strings"},   {"LISTBOX", 0x0080, "tab-stops"}};

std::string Words(const std::string& windowClass, DWORD style) {
  std::string words;
  for (const auto& [itsClass, bits, word] : kStyleWords) {
    if ((itsClass != nullptr && windowClass != itsClass) || (style & bits) != bits) continue;
    words += std::string(" ") + word;
    style &= ~bits;
  }
  return words;
}

std::ostream& operator<<(std::ostream& out, const platform::Place& place) {
  return out << place.x << "," << place.y << " " << place.width << "x" << place.height;
}

std::string TextOf(HMODULE library, WORD id) {
  constexpr WORD kDialogs = 5;
  const auto form = platform::ParseDialogTemplate(platform::FindResourceOf(library, kDialogs, id));
  if (!form) return "broken";
  std::ostringstream out;
  out << '"' << Utf8(form->title) << "\" " << form->place << Words(kDialog, form->style) << ", "
      << Utf8(form->font) << " " << form->fontSize << "\n";
  for (const auto& control : form->controls) {
    const std::string windowClass = Utf8(control.windowClass);
    out << control.id << " " << windowClass << " \"" << Utf8(control.text) << "\" " << control.place
        << Words(windowClass, control.style) << "\n";
  }
  return out.str();
}

TEST(DialogForms, AreTheOnesThatTheOfficeKnows) {
  HMODULE library =
      LoadLibraryA((testkit::ProductFolder() / testkit::LibraryFile("qlx99")).string().c_str());
  EXPECT_EQ(
      TextOf(library, IDD_BANK_CHOICE),
      R"("Bankverbindung auswählen" 19,23 240x114 visible popup caption close-box modal-frame 3d-look centred, MS Sans Serif 8
1 BUTTON "&Übernehmen" 180,85 50x14 visible tab centred
501 STATIC "Zum ausgewählten Adressant wurden mehrere Bankverbindungen angelegt ! " 8,4 220x22 visible
502 STATIC "Bitte wählen Sie eine Bankverbindung aus." 8,22 220x10 visible
403 LISTBOX "" 8,32 164x76 visible border vscroll hscroll tab notify strings tab-stops
601 LISTBOX "Listbox2" 176,32 50x35 border vscroll tab notify strings
)");
  EXPECT_EQ(
      TextOf(library, IDD_CONTACT_CHOICE),
      R"("Ansprechpartner auswählen" 0,0 240x119 visible popup caption close-box modal-frame 3d-look centred, MS Sans Serif 8
1 BUTTON "&Übernehmen" 180,92 50x14 visible tab centred
501 STATIC "Zum ausgewählten Adressant wurden mehrere Ansprechpartner angelegt ! " 8,4 220x22 visible
502 STATIC "Bitte wählen Sie einen Ansprechpartner aus." 8,22 220x10 visible
303 LISTBOX "" 8,32 164x84 visible border vscroll hscroll tab notify strings tab-stops
701 LISTBOX "Listbox2" 176,30 52x34 border vscroll tab notify strings
)");
  EXPECT_EQ(TextOf(library, IDD_PARTY_SELECTION),
            R"("" 0,0 344x183 visible popup caption 3d-look centred, MS Sans Serif 8
105 STATIC "Aktennummer:" 8,9 56x8 visible
206 EDIT "" 68,9 60x12 visible border read-only
107 STATIC "Rubrum:" 8,26 44x8 visible
208 EDIT "" 68,26 196x12 visible border read-only
503 STATIC "Beteiligte zur Akte:" 6,44 60x8 visible
201 LISTBOX "" 4,52 332x104 visible border vscroll hscroll tab notify strings tab-stops
104 STATIC "Beziehungen zum Beteiligten:" 8,125 100x8
202 LISTBOX "" 4,134 272x14 border notify strings tab-stops
1 BUTTON "&Übernehmen" 225,160 50x14 visible tab centred
2 BUTTON "Abbruch" 285,160 50x14 visible tab centred
301 LISTBOX "" 284,0 50x24 border notify strings
401 LISTBOX "" 284,24 52x16 border notify strings
)");
  FreeLibrary(library);
}

}  // namespace
}  // namespace qlx99::tests
