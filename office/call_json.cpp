#include "office/call_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "office/export_call.h"
#include "office/install_kind.h"

namespace office {
namespace {

using Json = nlohmann::ordered_json;

Json FieldsOf(const DeliveredRecord& record) {
  if (!record.IsComplete()) return nullptr;
  Json fields = Json::object();
  for (std::size_t i = 0; i < record.Fields().size(); ++i) {
    fields[std::string(record.NameAt(i))] = record.Fields()[i];
  }
  return fields;
}

bool HasText(const std::string& field) { return !field.empty(); }

}  // namespace

JsonAnswer CallForJson(std::string_view name, const std::vector<std::string>& arguments) {
  const Export& called = ExportNamed(name);
  const CallOutcome outcome = CallExport(called, arguments);
  Json answer{{"export", called.name}, {"kind", KindName()}, {"result", outcome.result}};
  if (!called.fields.empty()) {
    answer["record"] = nullptr;
    answer["fields"] = nullptr;
  }
  bool hasContent = false;
  if (outcome.ansiRecord) {
    const DeliveredRecord record(called, *outcome.ansiRecord, Reader::kProgram);
    answer["record"] = record.Text();
    answer["fields"] = FieldsOf(record);
    hasContent = record.IsComplete() && std::ranges::any_of(record.Fields(), HasText);
  }
  const bool delivered = called.fields.empty() ? outcome.result != 0 : hasContent;
  return {answer.dump(), delivered};
}

}  // namespace office
