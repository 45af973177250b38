#include "office/argument_checks.h"

#include <string>

#include "cases/case_file.h"
#include "office/text_encoding.h"

namespace office {
namespace {

std::string WhyNotFilled(const std::string& text) { return text.empty() ? "is empty" : ""; }

std::string WhyEmpty(const std::string& text) { return WhyNotFilled(std::string(Trimmed(text))); }

std::string WhyNoCaseNumber(const std::string& text) {
  const std::size_t end = text.find_last_not_of(' ') + 1;
  if (ColumnsOf(std::string_view(text.data(), end)) <= qlx99::kCaseNumberLength) {
    return WhyEmpty(text);
  }
  return "has more than the " + std::to_string(qlx99::kCaseNumberLength) +
         " characters of a case number";
}

}  // namespace

CLI::Validator NotEmpty() { return {WhyEmpty, ""}; }

CLI::Validator Filled() { return {WhyNotFilled, ""}; }

CLI::Validator CaseNumber() { return {WhyNoCaseNumber, ""}; }

}  // namespace office
