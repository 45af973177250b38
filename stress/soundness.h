// Whether a record file is sound, looked at from behind the record manager.
#pragma once

#include <filesystem>
#include <string>

namespace stress {

// What is wrong with the file, or nothing: its pages and indexes, and every key of every record.
// Nobody may have it open.
std::string DamageOf(const std::filesystem::path& file);

// Makes the file work with a rollback journal, as record files on network drives do. Nobody may
// have it open.
void UseRollbackJournal(const std::filesystem::path& file);

}  // namespace stress
