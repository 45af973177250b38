// Whether there is anything that the library could read. The library tells a user what is missing,
// but gives a program the same result as for a case that does not exist.
#pragma once

#include <filesystem>
#include <string>

#include "frame/registry.h"
#include "office/failure.h"

namespace office {

// Whether the value is stored as a number, whose bytes the library would take for a text.
bool IsNumber(const qlx99::RegistryValue& value);

// The reason, and what to do, to stand behind the value's name.
std::string WhyNotConfigured(const qlx99::RegistryValue& value);

// What is configured, as the library reads it; fails with why it reads nothing.
template <const qlx99::RegistryValue& value>
std::string ConfiguredText() {
  const auto text = qlx99::ReadConfiguration<value>();
  if (text && text->front() != '\0' && !IsNumber(value)) return text->data();
  throw Failure(WhyNotConfigured(value));
}

// The folder that "DataRoot" names; fails when it is not configured.
std::filesystem::path ConfiguredDataRoot();

// The same; fails also when there is no such folder, or no record file in it.
std::filesystem::path ExistingDataRoot();

// What is wrong with a folder that is to hold the record files, as in "There is no folder X"; empty
// when there is nothing.
std::string LackOf(const std::filesystem::path& folder);

// Fails with what is missing: the configuration, the folder of the record files or, where the
// library reads them itself, the record manager or the file of the cases.
void RequireReadableOffice();

// Fails where GetDokuNr could not store its number: it gives 1 then, to every letter.
void RequireDocumentNumbers();

}  // namespace office
