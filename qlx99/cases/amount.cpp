// The word processor may have left the floating-point unit in any state: exceptions that stop it,
// other rounding, no room for a number. So an amount is computed from its bits, in integers.
#include "cases/amount.h"

#include <algorithm>
#include <array>

#include "frame/bytes.h"

namespace qlx99 {
namespace {

constexpr std::size_t kGroup = 3;
constexpr std::size_t kMaxGroups = 4;
constexpr std::size_t kDecimals = 2;

// An IEEE 754 double: mantissa * 2^exponent.
struct Parts {
  bool negative;
  bool finite;
  std::uint64_t mantissa;  // of 53 bits
  int exponent;
};

Parts PartsOf(Amount amount) {
  constexpr int kFractionBits = 52;
  constexpr std::uint64_t kHiddenBit = 1ULL << kFractionBits;  // not stored
  constexpr int kNotFinite = 0x7FF;
  constexpr int kLeastExponent = -1074;
  const int stored = static_cast<int>(amount.bits >> kFractionBits) & kNotFinite;
  const std::uint64_t fraction = amount.bits & (kHiddenBit - 1);
  return {.negative = amount.bits >> 63 != 0,
          .finite = stored != kNotFinite,
          .mantissa = stored == 0 ? fraction : fraction | kHiddenBit,
          .exponent = kLeastExponent + std::max(stored - 1, 0)};
}

// The decimal digits of an amount in hundredths, at least three: one stands before the decimals.
class Hundredths {
 public:
  explicit Hundredths(std::uint64_t number) {
    for (; number > 0 || Digits().size() <= kDecimals; number /= 10) {
      digits_[--begin_] = static_cast<char>('0' + number % 10);
    }
  }

  void Double() {
    int carry = 0;
    for (std::size_t at = kSize; at > begin_; --at) {
      const int doubled = 2 * (digits_[at - 1] - '0') + carry;
      digits_[at - 1] = static_cast<char>('0' + doubled % 10);
      carry = doubled / 10;
    }
    if (carry > 0) digits_[--begin_] = '1';
  }

  std::string_view Digits() const { return {digits_.data() + begin_, kSize - begin_}; }

 private:
  static constexpr std::size_t kSize = 311;  // the largest double has 309 before its decimals

  std::array<char, kSize> digits_{};
  std::size_t begin_ = kSize;
};

// mantissa * 100 / 2^bits, as "%.2f" rounds: to the nearest, a half to the even one.
std::uint64_t RoundedHundredths(std::uint64_t mantissa, int bits) {
  const std::uint64_t hundredths = mantissa * 100;
  if (bits > 60) return 0;  // hundredths has no more bits
  const std::uint64_t whole = hundredths >> bits;
  const std::uint64_t rest = hundredths - (whole << bits);
  const std::uint64_t half = 1ULL << (bits - 1);
  const bool up = rest > half || (rest == half && whole % 2 == 1);
  return up ? whole + 1 : whole;
}

Hundredths HundredthsOf(const Parts& parts) {
  if (parts.exponent < 0) return Hundredths(RoundedHundredths(parts.mantissa, -parts.exponent));
  Hundredths hundredths(parts.mantissa * 100);
  for (int i = 0; i < parts.exponent; ++i) hundredths.Double();
  return hundredths;
}

// The digits before the decimals, the last groups of three set off by points.
void AppendGrouped(std::string_view digits, ResultLine& dest) {
  const std::size_t groups = std::min((digits.size() - 1) / kGroup, kMaxGroups);
  std::size_t at = digits.size() - groups * kGroup;
  dest.Append(Part(digits, 0, at));
  for (; at < digits.size(); at += kGroup) {
    dest.Append(".");
    dest.Append(Part(digits, at, kGroup));
  }
}

}  // namespace

void FormatAmount(Amount amount, ResultLine& dest) {
  const Parts parts = PartsOf(amount);
  if (!parts.finite) {
    dest.AddEmptyField();
    return;
  }
  const Hundredths hundredths = HundredthsOf(parts);
  const std::string_view digits = hundredths.Digits();
  if (parts.negative) dest.Append("-");
  AppendGrouped(Part(digits, 0, digits.size() - kDecimals), dest);
  dest.Append(",");
  dest.AddVerbatim(Part(digits, digits.size() - kDecimals, kDecimals));
}

}  // namespace qlx99
