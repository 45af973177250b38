// Between a program of the office and the test program that directs it.
#pragma once

namespace qlx99::tests {

// The test program has a window of this class for each program, titled with the class of that
// program's window.
inline constexpr const char* kDirectorClass = "qlx99 test director";

// The registered message that a program posts there once it runs; the word parameter says how it is
// to show itself.
inline constexpr const char* kStartedMessage = "qlx99 test: started";

}  // namespace qlx99::tests
