#include "office/export_table.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <utility>

#include "frame/exports.h"
#include "office/failure.h"
#include "office/record_text.h"

namespace office {
namespace {

// An export under a signature that all have in common; where its buffer stands, its own tells.
template <class... Parameter>
std::function<std::int32_t(CallArguments&)> Calling(std::int32_t(WINAPI* function)(Parameter...)) {
  return [function](CallArguments& arguments) {
    // In braces, so that the arguments are taken in their order.
    std::tuple<Parameter...> values{arguments.Next<Parameter>()...};
    return std::apply([function](Parameter... value) { return function(value...); }, values);
  };
}

const std::vector<std::string_view> kFollowUpArguments = {"kindId",       "dueDate",       "userId",
                                                          "secondUserId", "partyRecordId", "text"};

std::vector<std::string_view> Before(std::string_view first, std::vector<std::string_view> others) {
  others.insert(others.begin(), first);
  return others;
}

const std::vector<Field> kUserFields = {
    {"name"}, {"thirdText"}, {"secondText"}, {"shortSign"}, {"number", Form::kNumber}};

const std::vector<Field> kFollowUpKindFields = {
    {"name", Form::kFreeText}, {"number", Form::kNumber}, {"id", Form::kNumber}};

const std::vector<Field> kFollowUpFields = {{"dueDate", Form::kDate},
                                            {"kindName"},
                                            {"kindId", Form::kNumber},
                                            {"text", Form::kFreeText},
                                            {"userName"},
                                            {"userSign"},
                                            {"userId", Form::kNumber},
                                            {"secondUserName"},
                                            {"secondUserSign"},
                                            {"secondUserId", Form::kNumber},
                                            {"partyPosition", Form::kNumber},
                                            {"id", Form::kNumber}};

const std::vector<Field> kCaseFields = {{"rubrum"},
                                        {"text40"},
                                        {"text30"},
                                        {"shortCode"},
                                        {"caseType"},
                                        {"amount", Form::kAmount},
                                        {"firstDate", Form::kDate},
                                        {"secondDate", Form::kDate},
                                        {"longText", Form::kFreeText},
                                        {"userName"},
                                        {"userSign"},
                                        {"archiveDate", Form::kDate},
                                        {"archiveMark"},
                                        {"partyCount", Form::kNumber},
                                        {"currencyCode"}};

const std::vector<Field> kAddressFields = {{"firstName"},
                                           {"name"},
                                           {"letterSalutation"},
                                           {"title"},
                                           {"nameAddition"},
                                           {"freeText"},
                                           {"shortField1"},
                                           {"shortField2"},
                                           {"shortField3"},
                                           {"shortField4"},
                                           {"shortField5"},
                                           {"wideField"},
                                           {"street"},
                                           {"postalCode"},
                                           {"place"},
                                           {"secondPostalCode"},
                                           {"secondPlace"},
                                           {"addressAddition"},
                                           {"nationality"},
                                           {"bankName"},
                                           {"bankCode"},
                                           {"accountNumber"},
                                           {"contactAddition"},
                                           {"linkText"},
                                           {"relationDesignation"}};

const std::vector<Field> kReferenceFields = {{"addressNumber", Form::kNumber},
                                             {"relationCode"},
                                             {"always0", Form::kNumber},
                                             {"linkNumber", Form::kNumberOrNone}};

const std::vector<Field> kPartyListFields = {{"relationCode", Form::kRelationCode},
                                             {"salutation"},
                                             {"name"},
                                             {"nameAddition"},
                                             {"street", Form::kFilled},
                                             {"place"},
                                             {"addressNumber", Form::kNumber},
                                             {"linkNumber", Form::kNumberOrNone},
                                             {"partyRecordId", Form::kNumber}};

constexpr std::string_view kDelivered = "-1: delivered";
constexpr std::string_view kDone = "-1: done";

std::vector<Export> MakeExports() {
  using namespace qlx99;
  return {
      {"GetDocuRoot", {"length"}, {{"path"}}, "1: delivered", Calling(GetDocuRoot)},
      {"GetProgramRoot",
       {"length"},
       {{"path"}},
       "1: there is such a folder",
       Calling(GetProgramRoot)},
      {"UserInit", {}, {}, "number of users", Calling(UserInit)},
      {"UserNext", {"index"}, kUserFields, kDelivered, Calling(UserNext)},
      {"ZtkodoliInit", {}, {}, "number of follow-up kinds", Calling(ZtkodoliInit)},
      {"ZtkodoliNext", {"index"}, kFollowUpKindFields, kDelivered, Calling(ZtkodoliNext)},
      {"WVInit", {"caseNumber"}, {}, "number of follow-ups", Calling(WVInit)},
      {"WVNext", {"caseNumber", "index"}, kFollowUpFields, kDelivered, Calling(WVNext)},
      {"WVNew", Before("caseNumber", kFollowUpArguments), {}, kDone, Calling(WVNew)},
      {"WVChange", Before("followUpId", kFollowUpArguments), {}, kDone, Calling(WVChange)},
      {"WVDelete", {"followUpId"}, {}, kDone, Calling(WVDelete)},
      {"SLesenDLL", {"caseNumber"}, kCaseFields, kDelivered, Calling(SLesenDLL)},
      {"ALesenDLL",
       {"caseNumber", "addressNumber", "linkNumber"},
       kAddressFields,
       kDelivered,
       Calling(ALesenDLL)},
      {"BLesenDLL",
       {"role", "caseNumber", "spare", "noDialog"},
       kReferenceFields,
       kDelivered,
       Calling(BLesenDLL)},
      {"BListeInit", {"caseNumber"}, {}, "number of parties", Calling(BListeInit)},
      {"BListeNext", {"caseNumber", "index"}, kPartyListFields, kDelivered, Calling(BListeNext)},
      {"GetAdrFieldsMain",
       {"first", "second", "third", "fourth"},
       {},
       kDone,
       Calling(GetAdrFieldsMain)},
      {"GetAdressTyp", {"first", "second"}, {}, kDone, Calling(GetAdressTyp)},
      {"GetDokuNr", {"caseNumber"}, {}, "the next document number", Calling(GetDokuNr)},
  };
}

std::int32_t WholeNumber(const std::string& text) {
  const auto number = NumberIn<std::int32_t>(text);
  if (!number) throw WrongUsage("\"" + text + "\" is not a whole number; this export takes one.");
  return *number;
}

}  // namespace

CallArguments::CallArguments(std::vector<std::string> ansiTexts) : texts_(std::move(ansiTexts)) {
  buffer_.fill(' ');
}

template <class Parameter>
Parameter CallArguments::Next() {
  if constexpr (std::is_same_v<Parameter, char*>) {
    return buffer_.data();
  } else {
    const std::string* const text = next_ < texts_.size() ? &texts_[next_] : nullptr;
    ++next_;
    if constexpr (std::is_same_v<Parameter, const char*>) {
      return text == nullptr ? nullptr : text->c_str();
    } else {
      return WholeNumber(text == nullptr ? "" : *text);
    }
  }
}

std::optional<std::string> CallArguments::Record() const {
  const std::string_view buffer(buffer_.data(), buffer_.size());
  const std::size_t written = buffer.find_last_not_of(' ') + 1;
  if (written == 0) return std::nullopt;
  return std::string(buffer.substr(0, std::min(buffer.find('\0'), written)));
}

std::span<const Export> Exports() {
  static const std::vector<Export> exports = MakeExports();
  return exports;
}

std::string ExportList() {
  std::string list;
  for (const Export& one : Exports()) {
    list.append("\n  ").append(one.name);
    for (const std::string_view argument : one.arguments) list.append(" ").append(argument);
  }
  return list;
}

const Export& ExportNamed(std::string_view name) {
  const auto found = std::ranges::find(Exports(), name, &Export::name);
  if (found != Exports().end()) return *found;
  throw WrongUsage("There is no export \"" + std::string(name) + "\". There are:" + ExportList());
}

}  // namespace office
