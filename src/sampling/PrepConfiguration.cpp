#include "sampling/PrepConfiguration.h"

#include <algorithm>
#include <cctype>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/Distribution.h"
#include "factors/Relation.h"

namespace tarvex {

namespace {

constexpr std::size_t kStatisticsRestLimit = 254;  // characters behind the statistics block's last number
constexpr std::size_t kPathLimit = 1023;
constexpr std::size_t kMethodNumberDigits = 10;

// Whether the next line is the method number of a sampler section. A record without a sampler has its directory line
// there, which is empty or a path.
bool methodNumberFollows(TextReader& in) {
  const std::string_view line = in.peekLine(kMethodNumberDigits + 1);
  return !line.empty() && line.size() <= kMethodNumberDigits + 1 &&
         std::all_of(line.begin(), line.end(), [&line](const char& c) {
           return std::isdigit(static_cast<unsigned char>(c)) != 0 ||
                  (c == '-' && &c == line.data() && line.size() > 1);
         });
}

void releaseTable(Factor& factor) {
  if (auto* distribution = dynamic_cast<Distribution*>(&factor)) distribution->clearTable();
}

}  // namespace

PrepConfiguration::PrepConfiguration(const PrepConfiguration& other) {
  *this = other;
}

PrepConfiguration& PrepConfiguration::operator=(const PrepConfiguration& other) {
  if (this == &other) return *this;
  factors = other.factors;
  sampler = other.sampler ? other.sampler->clone() : nullptr;
  samples = other.samples;
  sampleFile = other.sampleFile;
  sampleStatistics = other.sampleStatistics;
  external = other.external;
  factorNames = other.factorNames;
  nextFactor_ = other.nextFactor_;
  nextRow_ = other.nextRow_;
  failedRows_ = other.failedRows_;
  return *this;
}

bool PrepConfiguration::prepareGeneration() {
  samples.clear();
  if (!samples.allocate(factors.factorCount())) {
    sampler->errorText = samples.errorText();
    return false;
  }
  sampler->errorText = "No errors";
  sampler->warningText.clear();
  sampler->reset();
  sampleStatistics.reset();
  factorNames.clear();
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) factorNames.push_back(factors.factor(i).name);
  failedRows_.assign(factorNames.size(), 0);
  factors.prepareOrder();
  nextFactor_ = -1;
  nextRow_ = 0;
  return true;
}

std::int32_t PrepConfiguration::generate(std::int32_t target) {
  constexpr std::int32_t kSamplerShare = 50;  // percent that belong to the sampler
  constexpr std::int32_t kDone = 100;
  if (external == 1) return kDone;
  if (target <= kSamplerShare) return static_cast<std::int32_t>(sampler->generate(target, samples, factors));
  if (sampler->methodId == kFixed) {
    factors.releaseOrder();
    return kDone;
  }

  if (nextFactor_ == -1) nextFactor_ = nextRow_ = 0;
  const std::int32_t count = factors.factorCount();
  const std::int32_t runs = std::min(sampler->numSamples, samples.rows());
  const double cells = static_cast<double>(count) * runs;
  std::int32_t percent = cells > 0.0 ? 0 : kDone;
  while (percent < target) {
    const std::int32_t f = factors.factorAt(nextFactor_);
    if (!passCell(f)) return -1;
    if (++nextRow_ == runs) {
      releaseTable(factors.factor(f));
      ++nextFactor_;
      nextRow_ = 0;
    }
    percent = static_cast<std::int32_t>(((static_cast<double>(nextFactor_) * runs + nextRow_) / cells + 1.0) *
                                        (kDone - kSamplerShare));
  }
  if (percent >= kDone) {
    nextFactor_ = -1;
    factors.releaseOrder();
    sampleStatistics.emplace().compute(samples);
  }
  return percent;
}

// Turns the cell of the factor in the run `nextRow_` into a factor value.
bool PrepConfiguration::passCell(std::int32_t factorIndex) {
  Factor& factor = factors.factor(factorIndex);
  if (factor.isConstant()) return true;
  if (factor.isRelation()) {
    double* row = samples.rowPointer(nextRow_);
    double value = 0.0;
    if (row == nullptr) {
      sampler->errorText = samples.errorText();
      return false;
    }
    if (!static_cast<Relation&>(factor).evaluate(factorNames, row, value))
      ++failedRows_[static_cast<std::size_t>(factorIndex)];
    row[factorIndex] = value;
    return true;
  }
  // A plain factor, as external samples have them, knows no distribution.
  auto* distribution = dynamic_cast<Distribution*>(&factor);
  const bool refused =
      distribution == nullptr || (nextRow_ == 0 && distribution->needsTable() && !distribution->prepareInverse());
  if (refused) {
    sampler->errorText = "I cannot calculate the inverse cumulative of factor " + std::to_string(nextFactor_ + 1) +
                         " : generation aborted";
    return false;
  }
  double u = 0.0;
  if (samples.getColumnValue(nextRow_, factorIndex, u) &&
      samples.setColumnValue(nextRow_, factorIndex, distribution->value(u)))
    return true;
  sampler->errorText = samples.errorText();
  return false;
}

void PrepConfiguration::cancelGeneration() {
  if (nextFactor_ >= 0 && nextFactor_ < factors.factorCount())
    releaseTable(factors.factor(factors.factorAt(nextFactor_)));
  samples.clear();
  factorNames.clear();
  factors.releaseOrder();
  sampleStatistics.reset();
  nextFactor_ = -1;
}

std::string PrepConfiguration::relationFailures() const {
  std::string text;
  for (std::size_t i = 0; i < failedRows_.size(); ++i) {
    if (failedRows_[i] == 0) continue;
    if (!text.empty()) text += '\n';
    text += "The relation " + factors.factor(static_cast<std::int32_t>(i)).name + " could not be evaluated in " +
            std::to_string(failedRows_[i]) + " of " + std::to_string(samples.rows()) +
            " runs and has the value 0 there.";
  }
  return text;
}

void PrepConfiguration::write(TextWriter& out) const {
  out << external << '\n';
  samples.write(out);
  out << (sampleStatistics ? 1 : 0) << '\n';
  if (sampleStatistics) sampleStatistics->write(out);
  factors.write(out);
  if (sampler) sampler->write(out);
  out << RememberedDirectories::get(RememberedDirectories::Prep) << '\n' << sampleFile << "\n\n";
}

bool PrepConfiguration::read(TextReader& in) {
  in >> external;
  samples.read(in);
  std::int32_t hasStatistics = 0;
  in >> hasStatistics;
  in.skipLine();
  sampleStatistics.reset();
  if (hasStatistics == 1) {
    std::string rest;
    sampleStatistics.emplace().read(in);
    in.readLine(rest, kStatisticsRestLimit);
  }
  if (in.fail() || !factors.read(in)) {
    in.setFail();
    return false;
  }
  sampler.reset();
  if (methodNumberFollows(in)) sampler = readSampler(in);
  std::string directory;
  in.readLine(directory, kPathLimit);
  in.readLine(sampleFile, kPathLimit);
  if (in.fail()) return false;
  RememberedDirectories::set(RememberedDirectories::Prep, directory);
  return true;
}

}  // namespace tarvex
