#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Golden.h"
#include "support/Numbers.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

// What nearly every test needs.

namespace tarvex {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

namespace test {

// A test with a directory of its own. At its end the process is back where it was.
class InDirectory : public testing::Test {
 protected:
  std::string file(const std::string& name) const { return directory_.file(name); }

  ScopedCurrentDirectory stay_;
  TempDirectory directory_;
};

}  // namespace test
}  // namespace tarvex
