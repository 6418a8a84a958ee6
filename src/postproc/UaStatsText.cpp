// The text form of UaStats: the uncertainty block.
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/NumberLine.h"
#include "postproc/UaStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxNameChars = 999;
// The least that a variable takes: an empty name's line and two tables, a digit and a tab for each number.
constexpr std::uint64_t kMinVariableBytes = 1 + 2 * 2 * kHistogramEntries * 2;

}  // namespace

void UaStats::write(TextWriter& out) const {
  out << variableCount() << '\n' << sampleSize_ << '\n' << kolmogorovConfidence << '\t' << tchebyConfidence << '\n';
  if (names_.empty()) return;
  // A name beyond the reader's limit, a long expression's, is cut: the record lists the variables in full elsewhere.
  for (const std::string& name : names_) out << std::string_view(name).substr(0, kMaxNameChars) << '\n';
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
  in >> count >> sampleSize_ >> kolmogorovConfidence >> tchebyConfidence;
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
  for (std::string& name : names_) in.readLine(name, kMaxNameChars);
  for (auto* values : {&minima_, &maxima_, &means_, &stds_, &skewness_, &kurtosis_}) {
    if (!in.peekLine(1).empty()) values->resize(size);  // an empty line stands for an empty array
    for (double& value : *values) in >> value;
    finishNumberLine(in);
  }
  for (auto* tables : {&linearHistograms_, &logHistograms_}) {
    tables->resize(size);
    for (Histogram& table : *tables)
      for (HistogramEntry& entry : table) in >> entry.left >> entry.count;
  }
}

}  // namespace tarvex
