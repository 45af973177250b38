#include "office/export_table.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>
#include <tuple>
#include <type_traits>
#include <utility>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "office/delivered_text.h"
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

std::vector<std::string> WordsOf(const char* text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

// "userId:number"
Field FieldIn(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return {text};
  static const std::map<std::string, Form> forms{
      {"freeText", Form::kFreeText},         {"filled", Form::kFilled}, {"number", Form::kNumber},
      {"numberOrNone", Form::kNumberOrNone}, {"date", Form::kDate},     {"amount", Form::kAmount},
      {"relationCode", Form::kRelationCode}};
  return {text.substr(0, colon), forms.at(text.substr(colon + 1))};
}

std::vector<Field> FieldsIn(const char* text) {
  std::vector<Field> fields;
  std::ranges::transform(WordsOf(text), std::back_inserter(fields), FieldIn);
  return fields;
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
  const auto text = DeliveredText({buffer_.data(), buffer_.size()});
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::span<const Export> Exports() {
#define ROW(name, delegate, arguments, fields, result) \
  Export{#name, WordsOf(arguments), FieldsIn(fields), result, Calling(qlx99::name)},
  static const std::vector<Export> exports{QLX99_EXPORTS(ROW)};
#undef ROW
  return exports;
}

std::string ExportList() {
  std::string list;
  for (const Export& one : Exports()) {
    list.append("\n  ").append(one.name);
    for (const std::string& argument : one.arguments) list.append(" ").append(argument);
  }
  return list;
}

const Export& ExportNamed(std::string_view name) {
  const auto found = std::ranges::find(Exports(), name, &Export::name);
  if (found != Exports().end()) return *found;
  throw WrongUsage("There is no export \"" + std::string(name) + "\". There are:" + ExportList());
}

}  // namespace office
