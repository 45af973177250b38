// One record of a file: its bytes, read and written by the file's fields.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "frame/bytes.h"
#include "store/record_layout.h"

namespace qlx99 {

// An IEEE 754 double, by its bits: the word processor may have left the floating-point unit in a
// state in which it cannot even be copied as a number.
struct Amount {
  std::uint64_t bits;
};

// Layout is one of the structs that declare a record file; the fields used are that struct's. The
// bytes may be anything: a text is as wide as its field whatever stands in it.
template <class Layout>
struct Record {
  using Int32Field = Listed<typename Layout::Int32Field>;
  using DayField = Listed<typename Layout::DayField>;
  using AmountField = Listed<typename Layout::AmountField>;
  using TextField = Listed<typename Layout::TextField>;

  std::array<char, Layout::file.length> bytes{};

  std::int32_t operator[](const Int32Field& field) const { return Get<std::int32_t>(field); }
  std::uint16_t operator[](const DayField& field) const { return Get<std::uint16_t>(field); }
  Amount operator[](const AmountField& field) const { return Get<Amount>(field); }

  // The whole width, blanks included; it lives as long as the record.
  std::string_view operator[](const TextField& field) const {
    return {bytes.data() + field.offset, field.width};
  }

  void Set(const Int32Field& field, std::int32_t value) { Put(field, value); }
  void Set(const DayField& field, std::uint16_t value) { Put(field, value); }
  void Set(const AmountField& field, Amount value) { Put(field, value); }

  // Pads the text with blanks to the field's width; what is longer is cut.
  void Set(const TextField& field, std::string_view text) {
    char* const begin = bytes.data() + field.offset;
    std::fill_n(begin, field.width, ' ');
    CopyBytes(text, begin, field.width);
  }

 private:
  template <class Value, class Field>
  Value Get(const Field& field) const {
    Value value{};
    std::memcpy(&value, bytes.data() + field.offset, sizeof value);
    return value;
  }

  template <class Field, class Value>
  void Put(const Field& field, Value value) {
    std::memcpy(bytes.data() + field.offset, &value, sizeof value);
  }
};

}  // namespace qlx99
