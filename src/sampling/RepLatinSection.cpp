// The text form of the replicated design.
#include <charconv>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxElementLine = 100;
constexpr std::uint64_t kShortestElement = 3;  // bytes: a digit, a tab, the line's end
constexpr std::uint64_t kShortestRun = 2;      // bytes: a digit and a tab

}  // namespace

void RepLatinSampler::writeSection(TextWriter& out) const {
  if (numFactors < 1) out.refuse("a replicated design without factors can't be kept");  // Kept: no reader takes it
  out << seed << '\n' << numSamples << '\n' << numFactors << '\n';
  out << choice_ << '\n' << baseDesign_ << '\n' << replications_ << '\n';
  for (std::int32_t i = 0; i < numFactors; ++i) {
    const std::string* name = elementName(i);
    out << (name ? elementFlag(i) : 0) << '\t' << (name ? *name : std::string()) << '\n';
  }
  for (std::int32_t factor = 0; factor < numFactors; ++factor)
    for (std::int32_t rank = 0; rank < baseDesign_; ++rank) {
      const std::int32_t* runs = runOf(factor, rank);
      for (std::int32_t i = 0; i < replications_; ++i) out << (runs ? runs[i] : 0) << '\t';
      out << '\n';
    }
}

bool RepLatinSampler::readItems(TextReader& in) {
  if (!readSeed(in) || !readRuns(in) || !readFactorCount(in, 1)) return false;
  in.expect("the choice") >> choice_;
  if (!readAtLeast(in, "the base design", 1, baseDesign_)) return false;
  in.expect("the number of replications") >> replications_;
  in.skipLine();
  return in.ok() && readElements(in) && readRunTable(in);
}

bool RepLatinSampler::readElements(TextReader& in) {
  elements_.clear();
  if (!in.checkCount(numFactors, kShortestElement)) return false;
  std::string line;
  for (std::int32_t i = 0; i < numFactors; ++i) {
    if (!in.expect("a factor of the design").readLine(line, kMaxElementLine)) return false;
    RepElement element;
    const char* end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data(), end, element.flag);
    if (error != std::errc() || stop == end || *stop != '\t')
      return in.refuse("a flag, a tab and a factor's name were expected, not '" + line + "'");
    element.name.assign(stop + 1, end);
    elements_.push_back(std::move(element));
  }
  return true;
}

bool RepLatinSampler::readRunTable(TextReader& in) {
  const std::int64_t lines = static_cast<std::int64_t>(numFactors) * baseDesign_;
  if (replications_ < 1) {  // empty lines, which no number would take
    if (!in.checkCount(lines, 1)) return false;
    for (std::int64_t i = 0; i < lines && in.ok(); ++i) in.skipLine();
    return in.ok();
  }
  if (!in.checkCount(lines, kShortestRun * static_cast<std::uint64_t>(replications_))) return false;
  runTable_.assign(runIndex(numFactors, 0), 0);
  const std::int64_t runs = static_cast<std::int64_t>(baseDesign_) * replications_;
  for (std::int32_t& run : runTable_) {
    std::int32_t number = 0;
    if (!readAtLeast(in, "a run of the table", 0, number)) return false;
    if (number >= runs)
      return in.refuse("a run of the table must be below " + std::to_string(runs) + ", not " + std::to_string(number));
    run = number;
  }
  in.skipLine();
  return true;
}

void RepLatinSampler::restoreDefaults() {
  *this = RepLatinSampler();
  numSamples = 0;
}

}  // namespace tarvex
