// The text form of UaStats: the uncertainty block.
#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"
#include "postproc/NumberLine.h"
#include "postproc/UaStats.h"

namespace tarvex {

namespace {

// The least that a variable takes: an empty name's line and two tables, a digit and a tab for each number.
constexpr std::uint64_t kMinVariableBytes = 1 + 2 * 2 * kHistogramEntries * 2;

}  // namespace

void UaStats::write(TextWriter& out) const {
  out << variableCount() << '\n' << sampleSize_ << '\n' << kolmogorovConfidence << '\t' << tchebyConfidence << '\n';
  if (names_.empty()) return;
  for (const std::string& name : names_) UaStats::kNameRule.write(out, name);
  for (const auto* values : {&minima_, &maxima_, &means_, &stds_, &skewness_, &kurtosis_}) {
    for (const double value : *values) out << value << '\t';
    out << '\n';
  }
  for (const auto* tables : {&linearHistograms_, &logHistograms_})
    for (const Histogram& table : *tables) {
      for (const HistogramEntry& entry : table) out << entry.left << '\t' << entry.count << '\t';
      out << '\n';
    }
}

void UaStats::read(TextReader& in) {
  clear();
  std::int32_t count = 0;
  in.expect("the number of variables of the statistics") >> count;
  in.expect("the number of runs") >> sampleSize_;
  in.expect("the confidence of the Kolmogorov band") >> kolmogorovConfidence;
  in.expect("the confidence of the bounds on the mean") >> tchebyConfidence;
  if (in.ok() && count != 0) readBlock(in, count);
  if (in.ok())
    in.skipLine();
  else
    clear();
}

void UaStats::readBlock(TextReader& in, std::int32_t count) {
  finishNumberLine(in);
  if (!in.checkCount(count, kMinVariableBytes)) return;
  const auto size = static_cast<std::size_t>(count);
  names_.resize(size);
  for (std::string& name : names_) UaStats::kNameRule.read(in, name);
  for (auto* values : {&minima_, &maxima_, &means_, &stds_, &skewness_, &kurtosis_}) {
    if (!in.peekLine(1).empty()) values->resize(size);  // an empty line stands for an empty array
    for (double& value : *values) in.expect("a statistic of a variable") >> value;
    finishNumberLine(in);
  }
  for (auto* tables : {&linearHistograms_, &logHistograms_}) {
    tables->resize(size);
    for (Histogram& table : *tables)
      for (HistogramEntry& entry : table) {
        in.expect("the edge of a bin") >> entry.left;
        in.expect("the runs in a bin") >> entry.count;
      }
  }
}

}  // namespace tarvex
