#include "platform/dialog_template.h"

#include <iterator>
#include <utility>

#include "platform/byte_reader.h"

namespace platform {

namespace {

Place TakePlace(ByteReader& reader) {
  // In braces, so that the numbers are taken in their order.
  return Place{reader.I16(), reader.I16(), reader.I16(), reader.I16()};
}

// A text, or in its place the number of a control's class.
std::u16string TakeText(ByteReader& reader) {
  constexpr WORD kNumberMark = 0xFFFF;
  constexpr WORD kFirstClass = 0x80;
  constexpr const char16_t* kClasses[] = {u"BUTTON", u"EDIT", u"STATIC", u"LISTBOX"};
  const WORD first = reader.U16();
  if (first == kNumberMark) return kClasses[(reader.U16() - kFirstClass) % std::size(kClasses)];
  return first == 0 ? u"" : static_cast<char16_t>(first) + reader.WideText();
}

ControlTemplate TakeControl(ByteReader& reader) {
  reader.Align();
  const DWORD style = reader.U32();
  reader.Expect(reader.U32() == 0);  // extended style
  ControlTemplate control{style, TakePlace(reader), reader.U16(), TakeText(reader),
                          TakeText(reader)};
  reader.Expect(reader.U16() == 0);  // length of its data
  return control;
}

}  // namespace

std::optional<DialogTemplate> ParseDialogTemplate(std::span<const std::byte> bytes) {
  constexpr DWORD kHasFont = 0x40;  // DS_SETFONT
  ByteReader reader(bytes);
  DialogTemplate dialog{};
  dialog.style = reader.U32();
  reader.Expect((dialog.style & kHasFont) != 0 && reader.U32() == 0);
  const WORD controlCount = reader.U16();
  dialog.place = TakePlace(reader);
  reader.Expect(TakeText(reader).empty() && TakeText(reader).empty());  // menu, class
  dialog.title = TakeText(reader);
  dialog.fontSize = reader.U16();
  dialog.font = reader.WideText();
  for (WORD i = 0; reader.Ok() && i < controlCount; ++i) {
    dialog.controls.push_back(TakeControl(reader));
  }
  return reader.Ok() ? std::optional(std::move(dialog)) : std::nullopt;
}

}  // namespace platform
