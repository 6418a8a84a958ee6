#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "base/RememberedDirectories.h"
#include "batch/Commands.h"
#include "batch/StopSignals.h"
#include "support/TempDirectory.h"

namespace tarvex::test {

using Words = std::vector<std::string>;

// Runs tarvex-batch in this process; keeps what it printed. Nothing of a run reaches the next test.
class CommandFixture : public testing::Test {
 protected:
  void SetUp() override { RememberedDirectories::forget(); }
  void TearDown() override {
    StopSignals::request(false);
    RememberedDirectories::forget();
  }

  int run(const Words& words, bool terminal = false) {
    std::ostringstream out;
    std::ostringstream errors;
    const int status = runBatch(words, out, errors, terminal);
    out_ = out.str();
    errors_ = errors.str();
    return status;
  }
  std::string file(const std::string& name) const { return directory_.file(name); }

  ScopedCurrentDirectory stay_;
  TempDirectory directory_;
  std::string out_;
  std::string errors_;
};

}  // namespace tarvex::test
