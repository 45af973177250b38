// The floating-point units of the processor as a host may leave them behind.
#pragma once

#include <cstdint>

namespace qlx99::tests {

// Until the end of its scope, what is no number, a division by zero and an overflow stop the
// program, results are rounded up and to single precision, and the x87's stack is full.
class OddFloatingPoint {
 public:
  OddFloatingPoint() {
    asm volatile("fnstcw %0" : "=m"(x87Control_));
    asm volatile("stmxcsr %0" : "=m"(sseControl_));
    for (int i = 0; i < kStackSize; ++i) asm volatile("fld1");
    asm volatile("fldcw %0" : : "m"(kOddX87Control));
    asm volatile("ldmxcsr %0" : : "m"(kOddSseControl));
  }
  ~OddFloatingPoint() {
    asm volatile("fninit");
    asm volatile("fldcw %0" : : "m"(x87Control_));
    asm volatile("ldmxcsr %0" : : "m"(sseControl_));
  }
  OddFloatingPoint(const OddFloatingPoint&) = delete;
  OddFloatingPoint& operator=(const OddFloatingPoint&) = delete;

 private:
  static constexpr int kStackSize = 8;
  static constexpr std::uint16_t kOddX87Control = 0x0832;
  static constexpr std::uint32_t kOddSseControl = 0x5900;

  std::uint16_t x87Control_ = 0;
  std::uint32_t sseControl_ = 0;
};

}  // namespace qlx99::tests
