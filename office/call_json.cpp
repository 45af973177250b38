#include "office/call_json.h"

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

}  // namespace

JsonAnswer CallForJson(std::string_view name, const std::vector<std::string>& arguments) {
  const Export& called = ExportNamed(name);
  const CallOutcome outcome = CallExport(called, arguments);
  Json answer{{"export", called.name}, {"kind", KindName()}, {"result", outcome.result}};
  if (!called.fields.empty()) {
    answer["record"] = nullptr;
    answer["fields"] = nullptr;
  }
  if (outcome.ansiRecord) {
    const DeliveredRecord record(called, *outcome.ansiRecord);
    answer["record"] = record.Text();
    answer["fields"] = FieldsOf(record);
  }
  const bool delivered = called.fields.empty() ? outcome.result != 0 : !answer["fields"].is_null();
  return {answer.dump(), delivered};
}

}  // namespace office
