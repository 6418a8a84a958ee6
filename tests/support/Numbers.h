#pragma once

#include <gtest/gtest.h>

namespace tarvex::test {

// True when `actual` lies within `relative` of the size of `expected`, or within `absolute` of it. Two not-a-numbers
// agree, and so do two equal infinities.
testing::AssertionResult agrees(double actual, double expected, double relative, double absolute = 0.0);

}  // namespace tarvex::test
