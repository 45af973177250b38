// The sibling library of the tests, which remembers how it was called.
#pragma once

#include <cstddef>
#include <cstdint>

namespace testkit {

struct DelegateCall {
  const char* name;  // null: not called yet
  std::size_t argumentCount;
  const void* arguments[5];
  char firstText[8];  // what the first argument said, cut
};

// What every delegate answers.
inline constexpr std::int32_t kDelegateAnswer = -123456;

// A first argument with which GetNextDoc shows a message before it answers.
inline constexpr const char* kWithMessage = "message";

// Exported beside the delegates, under the name "LastCall".
using LastCallFunction = const DelegateCall*();

}  // namespace testkit
