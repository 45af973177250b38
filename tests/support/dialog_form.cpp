#include "support/dialog_form.h"

#include <gtest/gtest.h>

#include "platform/byte_reader.h"
#include "support/text.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

using platform::ByteReader;

Place TakePlace(ByteReader& reader) {
  return {reader.I16(), reader.I16(), reader.I16(), reader.I16()};
}

// A text, or in its place the number of a control's class.
std::string TakeText(ByteReader& reader) {
  constexpr WORD kNumber = 0xFFFF;
  constexpr WORD kFirstClass = 0x80;
  constexpr const char* kClasses[] = {"BUTTON", "EDIT", "STATIC", "LISTBOX"};
  const WORD first = reader.U16();
  if (first == kNumber) return kClasses[(reader.U16() - kFirstClass) % std::size(kClasses)];
  return first == 0 ? "" : Utf8(static_cast<char16_t>(first) + reader.WideText());
}

DWORD TakeStyle(ByteReader& reader) {
  const DWORD style = reader.U32();
  EXPECT_EQ(reader.U32(), 0U) << "extended style";
  return style;
}

FormControl TakeControl(ByteReader& reader) {
  reader.Align();
  FormControl control{TakeStyle(reader), TakePlace(reader), reader.U16(), TakeText(reader),
                      TakeText(reader)};
  EXPECT_EQ(reader.U16(), 0U) << "data for the control's creation";
  return control;
}

}  // namespace

DialogForm FormOf(HMODULE library, WORD id) {
  ByteReader reader(world::DialogTemplate(library, id));
  DialogForm form{};
  form.style = TakeStyle(reader);
  const int controlCount = reader.U16();
  form.place = TakePlace(reader);
  EXPECT_EQ(TakeText(reader), "") << "menu";
  EXPECT_EQ(TakeText(reader), "") << "window class";
  form.title = TakeText(reader);
  form.fontSize = reader.U16();
  form.font = TakeText(reader);
  for (int i = 0; i < controlCount; ++i) form.controls.push_back(TakeControl(reader));
  EXPECT_TRUE(reader.Ok()) << "dialog " << id;
  return form;
}

}  // namespace qlx99::tests
