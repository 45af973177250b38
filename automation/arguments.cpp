#include "arguments.h"

#include <algorithm>
#include <string_view>

#include "office/delivered_text.h"
#include "office/failure.h"
#include "office/text_encoding.h"

namespace automation {
namespace {

constexpr UINT kAnsi = static_cast<UINT>(office::CodePage::kAnsi);

// Follows references from variable to variable.
VARIANT& Behind(VARIANT& given) {
  VARIANT* variable = &given;
  while (variable->vt == (VT_BYREF | VT_VARIANT)) variable = variable->pvarVal;
  return *variable;
}

struct Value : VARIANT {
  // A copy of what is behind all references: VariantCopyInd itself follows one.
  explicit Value(VARIANT& given) : VARIANT() {
    VariantInit(this);
    const HRESULT copied = VariantCopyInd(this, &Behind(given));
    if (FAILED(copied)) throw Failure{copied};
  }
  ~Value() { VariantClear(this); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;

  // Whatever the user's country: numbers are the library's, not the user's.
  void Become(VARTYPE type) {
    const HRESULT changed =
        VariantChangeTypeEx(this, this, LOCALE_INVARIANT, VARIANT_NOUSEROVERRIDE, type);
    if (FAILED(changed)) throw Failure{changed};
  }
};

bool IsTextOrNumber(VARTYPE type) {
  constexpr VARTYPE kTypes[] = {VT_BSTR, VT_I1,  VT_I2,   VT_I4, VT_I8, VT_UI1, VT_UI2,    VT_UI4,
                                VT_UI8,  VT_INT, VT_UINT, VT_R4, VT_R8, VT_CY,  VT_DECIMAL};
  return std::ranges::find(kTypes, type) != std::ranges::end(kTypes);
}

// Throws Failure for an argument that the client left out.
void CheckGiven(const VARIANT& value) {
  if (value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND) {
    throw Failure{DISP_E_PARAMNOTOPTIONAL};
  }
}

// The same for what is no text and no number.
void CheckType(const VARIANT& value) {
  CheckGiven(value);
  if (!IsTextOrNumber(value.vt)) throw Failure{DISP_E_TYPEMISMATCH};
}

// Without an exponent: the library would read 1E+15 as 1.
bool IsPlainNumber(std::wstring_view text) {
  return text.find_first_not_of(L"-.0123456789") == std::wstring_view::npos;
}

std::string Utf8(std::wstring_view text) {
  const auto length = static_cast<int>(text.size());
  std::string utf8(3 * text.size(), '\0');  // three bytes at most for each place
  utf8.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(),
                          static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

std::wstring Unicode(std::string_view bytes, UINT codePage) {
  const auto length = static_cast<int>(bytes.size());
  std::wstring text(bytes.size(), L'\0');  // a place at most for each byte
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), length)));
  return text;
}

// As the library takes it, or not at all: it would read a text only up to its first zero.
std::string Ansi(std::wstring_view text, const std::wstring& name) try {
  if (text.find(L'\0') != std::wstring_view::npos) {
    throw Failure{E_INVALIDARG, name + L": A text cannot hold the character 0."};
  }
  return office::Encode(Utf8(text));
} catch (const office::Failure& failure) {
  throw Failure{E_INVALIDARG, name + L": " + Unicode(failure.what(), CP_UTF8)};
}

}  // namespace

Arguments::Arguments(const DISPPARAMS& given, const char* names)
    : given_(given), names_(Widened(names)) {
  buffer_.fill(' ');
}

VARIANT& Arguments::Take() {
  ++taken_;
  return given_.rgvarg[Place()];
}

std::wstring Arguments::NextName() {
  std::wstring name;
  names_ >> name;
  return name;
}

// A null text is an empty one: on its way from another process it may become that.
const char* Arguments::Text() {
  const std::wstring name = NextName();
  Value value(Take());
  CheckType(value);
  const bool isText = value.vt == VT_BSTR;
  if (value.vt == VT_R4) value.Become(VT_R8);  // or it would be written with seven digits at most
  value.Become(VT_BSTR);
  const std::wstring_view text(value.bstrVal, SysStringLen(value.bstrVal));
  if (!isText && !IsPlainNumber(text)) throw Failure{DISP_E_OVERFLOW};
  return texts_.emplace_back(Ansi(text, name)).c_str();
}

// The only numbers are lengths of the buffer, and that one is ours.
std::int32_t Arguments::Number() {
  NextName();
  Value value(Take());
  CheckType(value);
  value.Become(VT_I4);
  return std::min<std::int32_t>(value.lVal, QLX99_RECORD_SIZE);
}

char* Arguments::Buffer() {
  VARIANT& given = Take();
  CheckGiven(given);
  VARIANT& variable = Behind(given);
  const bool isText = variable.vt == (VT_BYREF | VT_BSTR);
  const bool isAnything = &variable != &given && (variable.vt & VT_BYREF) == 0;
  if (!isText && !isAnything) throw Failure{DISP_E_TYPEMISMATCH};
  variable_ = &variable;
  return buffer_.data();
}

void Arguments::HandBack() const {
  if (variable_ == nullptr) return;
  const std::wstring text = Unicode(
      office::DeliveredText({buffer_.data(), buffer_.size()}).value_or(std::string_view()), kAnsi);
  BSTR const record = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (record == nullptr) throw Failure{E_OUTOFMEMORY};
  if (variable_->vt == (VT_BYREF | VT_BSTR)) {
    SysFreeString(*variable_->pbstrVal);
    *variable_->pbstrVal = record;
    return;
  }
  VariantClear(variable_);
  variable_->vt = VT_BSTR;
  variable_->bstrVal = record;
}

}  // namespace automation
