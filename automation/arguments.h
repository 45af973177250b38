// The arguments of a call, as a client gives them and as the library takes them.
//
// A client's texts are Unicode and its numbers are numbers; the library takes Windows-1252, for
// numbers too. Where the library wants a buffer, the client gives a variable, which receives the
// record that the library wrote.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <sstream>
#include <string>

#include "failure.h"
#include "frame/exports.h"
// Windows' own must come before it.
#include <oaidl.h>

namespace automation {

class Arguments {
 public:
  // Refers to the client's arguments, which automation hands over last first. `names` has their
  // names, for the words of a failure, with blanks between them; the buffer has none.
  Arguments(const DISPPARAMS& given, const char* names);

  // The next argument, by the type that an export takes it as: a text, a buffer or a number. It is
  // valid as long as this object. Throws Failure when it cannot be that.
  template <class Parameter>
  Parameter Next();

  // The place of the argument that was taken last, as automation counts them: from the end.
  UINT Place() const { return given_.cArgs - taken_; }

  // Gives the client's variable what the library left in its buffer, if there is one.
  void HandBack() const;

 private:
  VARIANT& Take();
  std::wstring NextName();
  const char* Text();
  std::int32_t Number();
  char* Buffer();

  const DISPPARAMS& given_;
  std::wistringstream names_;
  UINT taken_ = 0;
  std::deque<std::string> texts_;
  std::array<char, QLX99_RECORD_SIZE> buffer_{};
  VARIANT* variable_ = nullptr;  // the buffer's, of the client
};

template <>
inline const char* Arguments::Next() {
  return Text();
}
template <>
inline char* Arguments::Next() {
  return Buffer();
}
template <>
inline int Arguments::Next() {
  return Number();
}

}  // namespace automation
