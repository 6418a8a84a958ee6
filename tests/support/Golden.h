#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// Comparison of a produced file with the expected one, word by word:
//   - numbers of more than six digits, which sample tables hold, and those of up to six characters agree within 1e-9
//     of their size, or when both lie within 1e-12 around zero;
//   - other numbers agree within one unit of their sixth digit, or within 1e-11;
//   - a number that differs must still be written as "%.10g" or "%g" writes it;
//   - lines that are empty or hold a path agree with each other;
//   - everything else agrees byte for byte, `nan`, `inf` and integers of more than six digits included.

namespace tarvex::test {

// Full path of a file in tests/data/golden.
std::string goldenPath(const std::string& name);

// `expectedName`: in tests/data/golden. A failure tells the first lines that differ and how many there are.
testing::AssertionResult compareGolden(const std::string& expectedName, std::string_view actual);

}  // namespace tarvex::test
