#pragma once

#include <gtest/gtest.h>

#include <string>

namespace tarvex::test {

// A copy of what may fail to be copied.
template <class Value>
Value copyOf(const Value& value) {
  Value copy;
  std::string message;
  EXPECT_TRUE(copy.copyFrom(value, message)) << message;
  return copy;
}

}  // namespace tarvex::test
