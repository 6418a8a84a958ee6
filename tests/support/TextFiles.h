#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/TextWriter.h"

namespace tarvex::test {

// The bytes of a file; a test failure and an empty text when it can't be read.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view text);
// A program of shell commands that can be started.
void writeScript(const std::string& path, const std::string& commands);

// The lines of a text without their LF. What stands behind the last LF is a line of its own, an empty one too.
std::vector<std::string> splitLines(std::string_view text);

// The lines of a file, without an empty one behind the last LF.
std::vector<std::string> readLines(const std::string& path);

// What a value writes of itself.
template <class Value>
std::string textOf(Value&& value) {
  TextWriter out;
  if constexpr (requires { value.save(out); })
    value.save(out);
  else
    value.write(out);
  EXPECT_TRUE(out.ok()) << out.problem();
  return out.text();
}

}  // namespace tarvex::test
