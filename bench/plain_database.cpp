#include "bench/plain_database.h"

#include <array>
#include <string>

#include "bench/plain_sqlite.h"
#include "office/record_manager.h"
#include "office/record_text.h"
#include "record_files.h"

namespace bench {
namespace {

using namespace qlx99;

// "ZTCASE" of "ZTCASE.KRV".
std::string TableOf(const RecordFileInfo& file) {
  const std::string name = file.name;
  return name.substr(0, name.find('.'));
}

bool IsText(const FieldInfo& field) {
  return field.kind != FieldKind::kInt32 && field.kind != FieldKind::kAmount;
}

std::string SchemaOf(const RecordLayout& layout) {
  const std::string table = TableOf(layout.file);
  std::string columns;
  for (const FieldInfo& field : layout.fields) {
    columns += columns.empty() ? "" : ", ";
    columns.append(field.name).append(IsText(field) ? " TEXT" : " NUMERIC");
  }
  std::string sql = "CREATE TABLE " + table + "(" + columns + ");";
  for (const Key& key : layout.keys) {
    sql += "CREATE INDEX " + table + std::to_string(key.number) + " ON " + table + "(" +
           key.field.name + ");";
  }
  return sql;
}

std::string InsertOf(const RecordLayout& layout) {
  std::string values = "?";
  for (std::size_t i = 1; i < layout.fields.size(); ++i) values += ", ?";
  return "INSERT INTO " + TableOf(layout.file) + " VALUES(" + values + ")";
}

// The files that a letter is read from.
constexpr std::array kFiles{LayoutOf<UserRecord>(),           LayoutOf<CaseTypeRecord>(),
                            LayoutOf<ArchiveRecord>(),        LayoutOf<CaseRecord>(),
                            LayoutOf<NationalityRecord>(),    LayoutOf<SalutationRecord>(),
                            LayoutOf<TitleRecord>(),          LayoutOf<AddressRecord>(),
                            LayoutOf<BankConnectionRecord>(), LayoutOf<ContactPersonRecord>(),
                            LayoutOf<RelationRecord>(),       LayoutOf<AddressLinkRecord>(),
                            LayoutOf<CasePartyRecord>()};

void CopyTable(const RecordLayout& layout, office::TableFile& file, PlainConnection& connection) {
  connection.Execute(SchemaOf(layout).c_str());
  PlainStatement insert(connection.Handle(), InsertOf(layout).c_str());
  for (auto record = file.First(); record; record = file.Next()) {
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
      insert.Bind(static_cast<int>(i) + 1, office::FieldText(layout.fields[i], *record));
    }
    insert.Run();
  }
}

}  // namespace

void MakePlainDatabase(const std::filesystem::path& directory,
                       const std::filesystem::path& database) {
  PlainConnection connection(database);
  connection.Execute("PRAGMA journal_mode = WAL");
  connection.Execute("BEGIN");
  const office::RecordManager manager;
  for (const RecordLayout& layout : kFiles) {
    office::TableFile file(manager, directory, layout);
    CopyTable(layout, file, connection);
  }
  connection.Execute("COMMIT");
  connection.Execute("ANALYZE");
}

std::string LetterQuery(const std::string& caseNumber) {
  return "SELECT p.addressNumber, r.code, p.addressLinkNumber, p.id,"
         " k.firstName, k.name, s.letterSalutation, t.title, k.nameAddition, k.freeText,"
         " k.shortField1, k.shortField2, k.shortField3, k.shortField4, k.shortField5, k.wideField,"
         " a.street, a.houseNumber, a.postalCode, a.place, a.secondPostalCode, a.secondPlace,"
         " p.addressAddition, n.nationality, b.bankName, b.bankCode, b.accountNumber,"
         " p.contactAddition, l.linkText, lr.designation,"
         " c.rubrum, c.text40, c.text30, c.shortCode, y.text, c.amount, c.firstDate, c.secondDate,"
         " c.longText, u.name, u.shortSign, g.date, g.mark, c.currency,"
         " (SELECT count(*) FROM ZTHEAD WHERE caseId = c.id)"
         " FROM ZTCASE c"
         " JOIN ZTHEAD p ON p.caseId = c.id"
         " JOIN ZTKOFPAR r ON r.id = p.relationId AND r.code IN ('2', '25')"
         " JOIN ZTADRESS a ON a.number = p.addressNumber"
         " LEFT JOIN ZTPART k ON k.addressNumber = a.number"
         " LEFT JOIN ZTKOTITL t ON t.number = k.titleNumber"
         " LEFT JOIN ZTKOADBY s ON s.number = k.salutationNumber"
         " LEFT JOIN ZTBANK b ON b.addressNumber = a.number"
         " LEFT JOIN ZTKONAT n ON n.number = a.nationalityNumber"
         " LEFT JOIN ZTADTOAD l ON l.linkNumber = p.addressLinkNumber"
         "  AND l.addressNumber = a.number"
         " LEFT JOIN ZTKOFPAR lr ON lr.id = l.relationId"
         " LEFT JOIN ZTTCASE y ON y.id = c.caseTypeId"
         " LEFT JOIN ZTUSER u ON u.number = c.userId"
         " LEFT JOIN ZTABLAG g ON g.id = c.archiveEntryId"
         " WHERE c.caseNumber = " +
         caseNumber;
}

}  // namespace bench
