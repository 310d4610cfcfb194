#include "base/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavelle {
namespace {

TEST(Text, WritesTheShortestDecimalThatReadsBackTheSame) {
  for (const auto& [value, text] : {std::pair{1.0, "1.0"},
                                    {0.35, "0.35"},
                                    {-12.5, "-12.5"},
                                    {1e21, "1000000000000000000000.0"},
                                    {0.1 + 0.2, "0.30000000000000004"}}) {
    EXPECT_EQ(shortestDecimal(value), text);
    EXPECT_EQ(std::stod(shortestDecimal(value)), value);
  }
  EXPECT_EQ(fixedDecimal(29.76, 1), "29.8");
  EXPECT_GT(fixedDecimal(std::numeric_limits<double>::max(), 1).size(), 300U);
}

TEST(Text, WritesNumbersAsJavaScriptDoes) {
  for (const auto& [value, text] : {std::pair{-0.0, "0"},
                                    {30.0, "30"},
                                    {-12.5, "-12.5"},
                                    {0.1 + 0.2, "0.30000000000000004"},
                                    {123456789012345678901.0, "123456789012345680000"},
                                    {1e21, "1e+21"},
                                    {-1.5e-7, "-1.5e-7"},
                                    {0.00000123, "0.00000123"},
                                    {std::numeric_limits<double>::quiet_NaN(), "NaN"},
                                    {-std::numeric_limits<double>::infinity(), "-Infinity"}}) {
    EXPECT_EQ(scriptDecimal(value), text);
  }
}

TEST(Text, TellsUtf8AndEscapesWhatIsNone) {
  using Case = std::tuple<const char*, std::string, std::string>;
  for (const auto& [what, bytes, escaped] :
       std::initializer_list<Case>{{"plain", "Waves", "Waves"},
                                   {"two, three and four bytes", "é€🚀", "é€🚀"},
                                   {"Latin-1", "caf\xE9 x", "caf\\xE9 x"},
                                   {"a continuation alone", "\x80", "\\x80"},
                                   {"a surrogate", "\xED\xA0\x80", "\\xED\\xA0\\x80"},
                                   {"cut off at the end", "a\xE2\x82", "a\\xE2\\x82"}}) {
    EXPECT_EQ(escapedUtf8(bytes), escaped) << what;
    EXPECT_EQ(isUtf8(bytes), bytes == escaped) << what;
  }
}

}  // namespace
}  // namespace tavelle
