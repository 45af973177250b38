#include "platform/dialog_template.h"

#include <array>
#include <utility>

#include "platform/byte_reader.h"
#include "platform/recoding.h"

namespace platform {

namespace {

constexpr WORD kNumberMark = 0xFFFF;

// A text, or in its place the number of a resource or of a class.
struct TextOrNumber {
  std::string text;
  WORD number = 0;
};

TextOrNumber TakeTextOrNumber(ByteReader& reader) {
  const WORD first = reader.U16();
  if (first == 0) return {};
  if (first == kNumberMark) return {"", reader.U16()};
  const std::u16string wide = static_cast<char16_t>(first) + reader.WideText();
  return {FromUtf16(Encoding::kAnsi, wide, "?").text, 0};
}

struct ControlClass {
  WORD number;
  const char* name;
  ControlKind kind;
};

constexpr std::array kClasses{ControlClass{0x80, "BUTTON", ControlKind::kButton},
                              ControlClass{0x81, "EDIT", ControlKind::kEdit},
                              ControlClass{0x82, "STATIC", ControlKind::kStatic},
                              ControlClass{0x83, "LISTBOX", ControlKind::kListBox}};

std::optional<ControlKind> KindOf(TextOrNumber controlClass) {
  CharUpperBuffA(controlClass.text.data(), static_cast<DWORD>(controlClass.text.size()));
  for (const ControlClass& known : kClasses) {
    if (controlClass.number == known.number || controlClass.text == known.name) return known.kind;
  }
  return std::nullopt;
}

Place TakePlace(ByteReader& reader) {
  // One after another: an initializer list is evaluated in order.
  return Place{reader.I16(), reader.I16(), reader.I16(), reader.I16()};
}

// Style and extended style stand in different orders in the two forms.
DWORD TakeStyle(ByteReader& reader, bool extended) {
  if (extended) {
    reader.U32();  // help id
    reader.U32();  // extended style
    return reader.U32();
  }
  const DWORD style = reader.U32();
  reader.U32();  // extended style
  return style;
}

void SkipFont(ByteReader& reader, bool extended) {
  reader.Take(extended ? 6 : 2);  // size; and weight, italic, character set
  reader.WideText();
}

// Data for the control's creation, whose length counts the length itself in the plain form only.
void SkipCreationData(ByteReader& reader, bool extended) {
  const WORD length = reader.U16();
  const WORD counted = extended ? 0 : sizeof length;
  reader.Take(length > counted ? length - counted : 0);
}

std::optional<Control> TakeControl(ByteReader& reader, bool extended) {
  reader.Align();
  const DWORD style = TakeStyle(reader, extended);
  const Place place = TakePlace(reader);
  const int id = extended ? static_cast<int>(reader.U32()) : reader.U16();
  const std::optional<ControlKind> kind = KindOf(TakeTextOrNumber(reader));
  std::string text = TakeTextOrNumber(reader).text;
  SkipCreationData(reader, extended);
  if (!reader.Ok() || !kind) return std::nullopt;
  return Control{id, *kind, std::move(text), style, place, ListBox(style)};
}

bool TakeIsExtended(ByteReader& reader, std::span<const std::byte> bytes) {
  ByteReader beginning(bytes);
  const bool extended = beginning.U16() == 1 && beginning.U16() == kNumberMark;
  reader.Take(extended ? beginning.Position() : 0);
  return extended;
}

}  // namespace

std::optional<DialogTemplate> ParseDialogTemplate(std::span<const std::byte> bytes) {
  constexpr DWORD kHasFont = 0x40;  // DS_SETFONT
  ByteReader reader(bytes);
  const bool extended = TakeIsExtended(reader, bytes);
  DialogTemplate dialog;
  dialog.style = TakeStyle(reader, extended);
  const WORD controlCount = reader.U16();
  dialog.place = TakePlace(reader);
  TakeTextOrNumber(reader);  // menu
  TakeTextOrNumber(reader);  // window class
  dialog.title = TakeTextOrNumber(reader).text;
  if ((dialog.style & kHasFont) != 0) SkipFont(reader, extended);
  for (WORD i = 0; i < controlCount; ++i) {
    std::optional<Control> control = TakeControl(reader, extended);
    if (!control) return std::nullopt;
    dialog.controls.push_back(*std::move(control));
  }
  return reader.Ok() ? std::optional(std::move(dialog)) : std::nullopt;
}

}  // namespace platform
