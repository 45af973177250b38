// How a record file is declared: once, as data. A room of the office writes
//
//   struct TitleRecord {
//     static constexpr RecordFileInfo file{"ZTKOTITL.KRV", 79};
//     static constexpr Int32Field number{"number", 0};
//     static constexpr TextField title{"title", 4, 25};
//     static constexpr Key byNumber{0, number, Key::kUnique};
//     static constexpr auto fields = Fields(number, title);
//     static constexpr auto keys = Keys(byNumber);
//   };
//   static_assert(IsSound<TitleRecord>());
//
// The library reads through the declaration, the tool makes and shows files by it, and the tests
// fill records with it. Integers are little-endian, as is every machine that this library runs on.
// Bytes that no field names belong to the case-management system.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace qlx99 {

struct RecordFileInfo {
  const char* name;      // as it lies in the data directory
  std::uint16_t length;  // of every record, in bytes
};

enum class FieldKind : std::uint8_t {
  kInt32,      // signed
  kDayNumber,  // unsigned 16 bits, see store/dates.h
  kAmount,     // IEEE 754 double
  kText,       // Windows-1252, padded with blanks, not terminated
  kOemText,    // the same in the OEM code page
};

struct FieldInfo {
  const char* name;  // what the tool and the sample office call it
  FieldKind kind;
  std::uint16_t offset;  // from the record's start, in bytes
  std::uint16_t width;   // in bytes
};

struct Int32Field : FieldInfo {
  consteval Int32Field(const char* fieldName, std::uint16_t at)
      : FieldInfo{fieldName, FieldKind::kInt32, at, 4} {}
};

struct DayField : FieldInfo {
  consteval DayField(const char* fieldName, std::uint16_t at)
      : FieldInfo{fieldName, FieldKind::kDayNumber, at, 2} {}
};

struct AmountField : FieldInfo {
  consteval AmountField(const char* fieldName, std::uint16_t at)
      : FieldInfo{fieldName, FieldKind::kAmount, at, 8} {}
};

struct TextField : FieldInfo {
  consteval TextField(const char* fieldName, std::uint16_t at, std::uint16_t bytes,
                      FieldKind textKind = FieldKind::kText)
      : FieldInfo{fieldName, textKind, at, bytes} {}
};

// A key over one field. Records with the same value of a key with duplicates stand in the order of
// their insertion.
struct Key {
  enum Kind : std::uint8_t { kUnique, kDuplicates, kAutoincrement };

  std::uint8_t number;  // as the record manager counts the file's keys, from 0
  FieldInfo field;
  Kind kind;

  constexpr Key(std::uint8_t keyNumber, const FieldInfo& keyField, Kind keyKind)
      : number(keyNumber), field(keyField), kind(keyKind) {}
};

template <class... Field>
consteval auto Fields(const Field&... fields) {
  return std::array<FieldInfo, sizeof...(Field)>{fields...};
}

template <class... OneKey>
consteval auto Keys(const OneKey&... keys) {
  return std::array<Key, sizeof...(OneKey)>{keys...};
}

// Whether the fields stand in the order of their offsets, inside the record and without overlap,
// and the keys are numbered from 0 without a gap.
template <class Layout>
consteval bool IsSound() {
  std::size_t end = 0;
  for (const FieldInfo& field : Layout::fields) {
    if (field.offset < end) return false;
    end = std::size_t{field.offset} + field.width;
  }
  std::size_t number = 0;
  for (const Key& key : Layout::keys) {
    if (key.number != number++) return false;
  }
  return end <= Layout::file.length;
}

// A record file's declaration without its type, for whoever treats all files alike.
struct RecordLayout {
  RecordFileInfo file;
  std::span<const FieldInfo> fields;
  std::span<const Key> keys;
};

template <class Layout>
constexpr RecordLayout LayoutOf() {
  return {Layout::file, Layout::fields, Layout::keys};
}

}  // namespace qlx99
