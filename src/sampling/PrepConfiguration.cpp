#include "sampling/PrepConfiguration.h"

#include <algorithm>
#include <new>

#include "base/FreeSpace.h"
#include "base/Names.h"
#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"
#include "factors/FactorProblems.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

namespace {

constexpr std::size_t kStatisticsRestLimit = 254;  // characters behind the statistics block's last number
constexpr LineRule kDirectoryLine{"the directory", 1023};

constexpr std::string_view kPathSigns = "/\\:";

// A record without a sampler has its directory line in the section's place, which is empty or a path.
bool samplerFollows(TextReader& in) {
  const std::string_view line = in.peekLine(kDirectoryLine.maxChars);
  return !firstWord(line).empty() && line.find_first_of(kPathSigns) == std::string_view::npos;
}

// The remembered directory as the record keeps it; none where a line can't.
std::string directoryLine(bool hasSampler) {
  const std::string& directory = RememberedDirectories::get(RememberedDirectories::Prep);
  if (!kDirectoryLine.problem(directory).empty()) return {};
  // Without a sampler before it a bare name would be taken for one.
  const bool bare = !directory.empty() && directory.find_first_of(kPathSigns) == std::string::npos;
  return bare && !hasSampler ? "./" + directory : directory;
}

// What a table takes in the working directory: it lies there by row and by column, unless it stays in memory.
std::uint64_t workingBytes(std::int64_t rows, std::int32_t columns) {
  constexpr std::uint64_t kFiles = 2;
  const auto cells = static_cast<std::uint64_t>(rows) * static_cast<std::uint64_t>(columns);
  return cells <= sampValues::cacheLimit ? 0 : kFiles * sizeof(double) * cells;
}

std::string countText(std::int32_t runs, std::int32_t factors) {
  return std::to_string(runs) + " runs of " + std::to_string(factors) + (factors == 1 ? " factor" : " factors");
}

void addParagraph(std::string& text, const std::string& paragraph) {
  if (!text.empty() && !paragraph.empty()) text += '\n';
  text += paragraph;
}

}  // namespace

bool PrepConfiguration::copyFrom(const PrepConfiguration& other, std::string& message) {
  if (this == &other) return true;
  PrepConfiguration copy;
  if (!copy.factors.copyFrom(other.factors, message)) return false;
  if (other.sampler && !(copy.sampler = other.sampler->clone(message))) return false;
  if (!other.isHalfMade() && !copy.samples.assign(other.samples)) {
    message = copy.samples.errorText();
    return false;
  }
  copy.sampleFile = other.sampleFile;
  copy.sampleStatistics = other.sampleStatistics;
  copy.external = other.external;
  copy.factorNames = other.factorNames;
  copy.stage_ = other.stage_;
  copy.askedRuns_ = other.askedRuns_;
  copy.nextFactor_ = other.nextFactor_;
  copy.nextRow_ = other.nextRow_;
  copy.failedRows_ = other.failedRows_;
  copy.warnings_ = other.warnings_;
  copy.errorText_ = other.errorText_;
  if (copy.isHalfMade()) copy.dropHalfMade();
  *this = std::move(copy);
  return true;
}

bool PrepConfiguration::fail(const std::string& text) {
  errorText_ = text;
  if (sampler) sampler->errorText = text;
  return false;
}

bool PrepConfiguration::prepareGeneration() {
  warnings_.clear();
  if (external == 1) return true;
  if (!sampler) return fail("  No samples to generate");
  std::vector<FactorProblem> problems;
  if (sampler->methodId != kFixed) problems = factorProblems(factors);  // typed rows are values already
  if (const std::string errors = problemLines(problems, true); !errors.empty()) return fail(errors);
  sampValues empty;
  if (!empty.allocate(factors.factorCount()) || !empty.setOrder(samples.order())) return fail(empty.errorText());
  const std::string noRoom = whyNoRoom(WorkingFile::directory(), workingBytes(sampler->numSamples, empty.columns()),
                                       workingBytes(samples.rows(), samples.columns()));
  if (!noRoom.empty())
    return fail("A sample of " + countText(sampler->numSamples, empty.columns()) + " needs " + noRoom + ".");
  warnings_ = problemLines(problems, false);
  addParagraph(warnings_, sampler->warningBefore(factors));

  samples = std::move(empty);
  errorText_ = sampler->errorText = "No errors";
  askedRuns_ = sampler->numSamples;
  sampler->reset();
  sampleStatistics.reset();
  factorNames.clear();
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) factorNames.push_back(factors.factor(i).name);
  failedRows_.assign(factorNames.size(), 0);
  factors.prepareOrder();
  stage_ = Stage::Design;
  nextFactor_ = 0;
  nextRow_ = 0;
  return true;
}

std::int32_t PrepConfiguration::generate(std::int32_t target, const Progress& progress) {
  constexpr std::int32_t kFailed = -1;
  constexpr double kDesignShare = 0.5;
  if (external == 1 || stage_ == Stage::Done) return kDone;
  if (stage_ == Stage::Idle) {
    fail("The generation has not been prepared.");
    return kFailed;
  }
  try {
    std::int32_t percent = 0;
    if (stage_ == Stage::Design && !passDesign(percent, target, progress.part(0.0, kDesignShare))) return kFailed;
    if (stage_ == Stage::Values && !passValues(percent, std::min(target, kDone), progress.part(kDesignShare, 1.0)))
      return kFailed;
    return percent;
  } catch (const std::bad_alloc&) {
    fail("There is not enough memory for a sample of " + std::to_string(samples.rows()) + " runs.");
    return kFailed;
  }
}

// The sampler's percents. Beyond them the value pass begins, but of typed samples, which are values already.
bool PrepConfiguration::passDesign(std::int32_t& percent, std::int32_t target, const Progress& progress) {
  const double reached = sampler->generate(target, samples, factors, progress);
  if (reached < 0.0) return fail(sampler->errorText);
  percent = static_cast<std::int32_t>(reached);
  if (target <= kSamplerShare) return true;
  // A design that isn't complete by now makes no runs at all.
  if (reached < Sampler::kComplete || samples.rows() == 0) return fail("  No samples to generate");
  if (sampler->methodId != kFixed) {
    stage_ = Stage::Values;
    return true;
  }
  percent = kDone;
  stage_ = Stage::Done;
  factors.releaseOrder();
  return true;
}

void PrepConfiguration::cancelGeneration() {
  if (isHalfMade()) dropHalfMade();
}

void PrepConfiguration::dropHalfMade() {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) releaseTable(factors.factor(i));
  samples.clear();
  factorNames.clear();
  failedRows_.clear();
  factors.releaseOrder();
  sampleStatistics.reset();
  sampler->reset();
  sampler->numSamples = askedRuns_;
  stage_ = Stage::Idle;
}

std::string PrepConfiguration::relationFailures() const {
  std::string text;
  for (std::size_t i = 0; i < failedRows_.size(); ++i)
    if (failedRows_[i] > 0)
      addParagraph(text, "The relation " + factorNames[i] + " could not be evaluated in " +
                             std::to_string(failedRows_[i]) + " of " + std::to_string(samples.rows()) +
                             " runs and has the value 0 there.");
  return text;
}

void PrepConfiguration::write(TextWriter& out) const {
  out << external << '\n';
  samples.write(out);
  out << (sampleStatistics ? 1 : 0) << '\n';
  if (sampleStatistics) sampleStatistics->write(out);
  factors.write(out);
  if (sampler) sampler->write(out);
  out << directoryLine(sampler != nullptr) << '\n';
  kSampleFileRule.write(out, sampleFile);
  out << '\n';
}

bool PrepConfiguration::read(TextReader& in) {
  *this = PrepConfiguration();
  std::string directory;
  if (!readSample(in)) return false;
  if (!factors.read(in)) return in.refuse("the list of factors can't be used");
  if (samples.rows() > 0 && samples.columns() != factors.factorCount())
    return in.refuse("the table has " + std::to_string(samples.columns()) + " columns for " +
                     std::to_string(factors.factorCount()) + " factors");
  if (samplerFollows(in) && !readSampler(in)) return false;
  if (!kDirectoryLine.read(in, directory) || !kSampleFileRule.read(in, sampleFile)) return false;
  RememberedDirectories::set(RememberedDirectories::Prep, directory);
  return true;
}

// The table with its statistics.
bool PrepConfiguration::readSample(TextReader& in) {
  const auto readFlag = [&in](const char* what, std::int32_t& flag) {
    in.expect(what) >> flag;
    return in.ok() &&
           (flag == 0 || flag == 1 || in.refuse(std::string(what) + " must be 0 or 1, not " + std::to_string(flag)));
  };
  std::int32_t hasStatistics = 0;
  if (!readFlag("the flag of an external sample", external)) return false;
  if (!samples.read(in)) return false;
  if (!readFlag("the flag of statistics", hasStatistics)) return false;
  in.skipLine();
  if (hasStatistics == 0) return true;
  if (!sampleStatistics.emplace().read(in)) return false;
  if (samples.rows() > 0 && sampleStatistics->size() != samples.columns())
    return in.refuse("the statistics are of " + std::to_string(sampleStatistics->size()) + " columns, the table has " +
                     std::to_string(samples.columns()));
  std::string rest;
  return in.readLine(rest, kStatisticsRestLimit);
}

// The method, with what it records of the runs of the table.
bool PrepConfiguration::readSampler(TextReader& in) {
  sampler = tarvex::readSampler(in);
  if (!sampler) return false;
  const std::int64_t recorded = sampler->recordedRuns();
  return samples.rows() == 0 || recorded < 0 || recorded == samples.rows() ||
         in.refuse("the design of the method " + sampler->methodName + " has " + std::to_string(recorded) +
                   " runs, the table " + std::to_string(samples.rows()));
}

}  // namespace tarvex
