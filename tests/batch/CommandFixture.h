#pragma once

#include <iterator>
#include <sstream>

#include "base/RememberedDirectories.h"
#include "batch/Commands.h"
#include "batch/StopSignals.h"
#include "support/Test.h"

namespace tarvex::test {

using Words = std::vector<std::string>;

// The words of a command line without quotes.
inline Words wordsOf(const std::string& command) {
  std::istringstream in(command);
  return {std::istream_iterator<std::string>(in), {}};
}

// Runs tarvex-batch in this process; keeps what it printed. Nothing of a run reaches the next test. A word that begins
// with in/ is a golden file, one with out/ a file of the test's directory.
class CommandFixture : public InDirectory {
 protected:
  void SetUp() override { RememberedDirectories::forget(); }
  void TearDown() override {
    StopSignals::request(false);
    RememberedDirectories::forget();
  }

  int run(Words words, bool terminal = false) {
    for (std::string& word : words) word = placed(word);
    std::ostringstream out;
    std::ostringstream errors;
    const int status = runBatch(words, out, errors, terminal);
    out_ = out.str();
    errors_ = errors.str();
    return status;
  }
  std::string placed(const std::string& word) const {
    if (word.starts_with("in/")) return goldenPath(word.substr(3));
    return word.starts_with("out/") ? file(word.substr(4)) : word;
  }

  std::string out_;
  std::string errors_;
};

}  // namespace tarvex::test
