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

void RepLatinSampler::readSection(TextReader& in) {
  reset();
  in >> seed >> numSamples >> numFactors >> choice_ >> baseDesign_ >> replications_;
  in.skipLine();
  if (in.ok() && (seed < 1 || numSamples < 0 || numFactors < 1 || baseDesign_ < 1)) in.setFail();
  if (in.ok() && readElements(in) && readRunTable(in)) {
    randomState = -seed;
    return;
  }
  *this = RepLatinSampler();
  numSamples = 0;
}

bool RepLatinSampler::readElements(TextReader& in) {
  elements_.clear();
  in.checkCount(numFactors, kShortestElement);
  std::string line;
  for (std::int32_t i = 0; i < numFactors && in.readLine(line, kMaxElementLine); ++i) {
    RepElement element;
    const char* end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data(), end, element.flag);
    if (error != std::errc() || stop == end || *stop != '\t') {
      in.setFail();
      break;
    }
    element.name.assign(stop + 1, end);
    elements_.push_back(std::move(element));
  }
  return in.ok();
}

bool RepLatinSampler::readRunTable(TextReader& in) {
  const std::int64_t lines = static_cast<std::int64_t>(numFactors) * baseDesign_;
  if (replications_ < 1) {  // empty lines, which no number would take
    in.checkCount(lines, 1);
    for (std::int64_t i = 0; i < lines && in.ok(); ++i) in.skipLine();
    return in.ok();
  }
  if (!in.checkCount(lines, kShortestRun * static_cast<std::uint64_t>(replications_))) return false;
  runTable_.assign(runIndex(numFactors, 0), 0);
  const std::int64_t runs = static_cast<std::int64_t>(baseDesign_) * replications_;
  for (std::int32_t& run : runTable_) {
    in >> run;
    if (in.fail() || run < 0 || run >= runs) in.setFail();
  }
  in.skipLine();
  return in.ok();
}

}  // namespace tarvex
