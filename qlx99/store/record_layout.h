// How a record file is declared: once, as data. A room of the office writes
//
//   struct TitleRecord : RecordDeclaration<TitleRecord> {
//     static constexpr RecordFileInfo file{"ZTKOTITL.KRV", 79};
//
//     static constexpr Int32Field number{"number", 0};
//     static constexpr TextField title{"title", 4, 25};
//
//     static constexpr Key byNumber{0, number, Key::kUnique};
//
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

// A key over one field. Records with the same value of a key with duplicates stand in the order of
// their insertion.
struct Key {
  enum Kind : std::uint8_t { kUnique, kDuplicates, kAutoincrement };

  std::uint8_t number;  // as the record manager counts the file's keys, from 0
  FieldInfo field;
  Kind kind;
  bool isUsed = true;  // by this library, to find records or to write them

  constexpr Key(std::uint8_t keyNumber, const FieldInfo& keyField, Kind keyKind)
      : number(keyNumber), field(keyField), kind(keyKind) {}
};

// What a declaration is written in. Fields and keys belong to their record: no other record is read
// by them.
template <class Layout>
struct RecordDeclaration {
  struct Field : FieldInfo {
    using Record = Layout;
    consteval Field(const char* fieldName, FieldKind fieldKind, std::uint16_t at,
                    std::uint16_t bytes)
        : FieldInfo{fieldName, fieldKind, at, bytes} {}
  };

  struct Int32Field : Field {
    consteval Int32Field(const char* fieldName, std::uint16_t at)
        : Field(fieldName, FieldKind::kInt32, at, 4) {}
  };

  struct DayField : Field {
    consteval DayField(const char* fieldName, std::uint16_t at)
        : Field(fieldName, FieldKind::kDayNumber, at, 2) {}
  };

  struct AmountField : Field {
    consteval AmountField(const char* fieldName, std::uint16_t at)
        : Field(fieldName, FieldKind::kAmount, at, 8) {}
  };

  struct TextField : Field {
    consteval TextField(const char* fieldName, std::uint16_t at, std::uint16_t bytes,
                        FieldKind textKind = FieldKind::kText)
        : Field(fieldName, textKind, at, bytes) {}
  };

  // A key that the library reads or writes by. `qlx office check` wants it as it is declared.
  struct Key : qlx99::Key {
    consteval Key(std::uint8_t keyNumber, const Field& keyField, Kind keyKind)
        : qlx99::Key(keyNumber, keyField, keyKind) {}
  };

  // A key of the case-management system alone, which may make it as it likes.
  struct UnusedKey : qlx99::Key {
    consteval UnusedKey(std::uint8_t keyNumber, const Field& keyField, Kind keyKind)
        : qlx99::Key(keyNumber, keyField, keyKind) {
      this->isUsed = false;
    }
  };
};

// Not defined: naming it where the compiler computes stops the compiler.
void ThisFieldIsMissingInTheListOfFields();

// Where a field lies, as an argument. A field that its record's list lacks does not compile.
template <class Field>
struct Listed {
  std::uint16_t offset;
  std::uint16_t width;

  // Implicit, because fields are what is passed.
  // NOLINTNEXTLINE(google-explicit-constructor, hicpp-explicit-conversions)
  consteval Listed(const Field& field) : offset(field.offset), width(field.width) {
    for (const FieldInfo& one : Field::Record::fields) {
      if (one.offset == offset && one.width == width) return;
    }
    ThisFieldIsMissingInTheListOfFields();
  }
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
// and the keys are numbered from 0 without a gap and lie over integers or texts: the tool makes no
// keys that sort days or amounts.
template <class Layout>
consteval bool IsSound() {
  std::size_t end = 0;
  for (const FieldInfo& field : Layout::fields) {
    if (field.offset < end) return false;
    end = std::size_t{field.offset} + field.width;
  }
  std::size_t number = 0;
  for (const Key& key : Layout::keys) {
    const FieldKind kind = key.field.kind;
    const bool hasKeyType = kind == FieldKind::kInt32 || kind == FieldKind::kText;
    if (key.number != number++ || !hasKeyType) return false;
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
