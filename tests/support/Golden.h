#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// Comparison of a produced file with the expected one. The kind of file, told by the suffix of the expected name (.fac,
// .sam, .spc, .imd; anything else is plain six-digit text), says which lines hold the sample table and which are not
// compared because they hold a directory or the name of a file:
//   - numbers of a sample table (ten digits) agree within 1e-9 of their size, or 1e-12 of the largest of their column;
//   - other numbers (six digits) agree within one unit of their sixth digit, or within 1e-11;
//   - a number that differs must still be written as "%.10g" or "%g" writes it;
//   - everything else agrees byte for byte, `nan`, `inf` and integers of more than six digits included.

namespace tarvex::test {

// Full path of a file in tests/data/golden.
std::string goldenPath(const std::string& name);

// `expectedPath`: a name in tests/data/golden, or a path that begins with '/'. A failure tells the first lines that
// differ and how many there are.
testing::AssertionResult compareGolden(const std::string& expectedPath, std::string_view actual);

// The same for two texts; `name` gives the kind of file by its suffix.
testing::AssertionResult compareTexts(const std::string& name, std::string_view expected, std::string_view actual);

}  // namespace tarvex::test
