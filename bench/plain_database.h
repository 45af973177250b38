// The records of a letter as plain columns of one database, as somebody would keep them who reads
// them with one query.
#pragma once

#include <filesystem>

namespace bench {

// Reads the office's files through their layouts and writes the same data to a new database. Tables
// are called as the files, columns as the fields; every key has its index.
void MakePlainDatabase(const std::filesystem::path& directory,
                       const std::filesystem::path& database);

// One letter's data as one join, for one case number: what BLesenDLL, ALesenDLL and SLesenDLL
// deliver for a case with one client. `caseNumber` is "?", or the number in quotation marks.
std::string LetterQuery(const std::string& caseNumber);

}  // namespace bench
