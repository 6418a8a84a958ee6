#include <cerrno>
#include <limits>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxPath = 254;
constexpr std::size_t kMaxDirectory = 1023;
constexpr std::size_t kKeptName = 28;  // Kept: longer names of outputs come back cut.
constexpr std::size_t kAnyDistance = std::numeric_limits<std::size_t>::max();

void checkRange(TextReader& in, std::int32_t value, std::int32_t largest) {
  if (value < 0 || value > largest) in.setFail();
}

}  // namespace

void ModelConfiguration::write(TextWriter& out) const {
  out << executable << '\n' << outputFile << '\n' << kind << '\n' << spreadsheet << '\n';
  if (kind == kInternalModel) {
    InternalModel none;
    (internalModel_ ? *internalModel_ : none).write(out);
  }
  out << runCount() << '\n' << outputCount() << '\n';
  for (const std::string& name : outputNames_) out << name << '\n';
  out << timeMode << '\n';
  std::vector<double> values;
  for (std::int32_t run = 0; run < runCount() && out.ok(); ++run) {
    const std::vector<double>& times = runTimes_.of(run);
    if (!readRun(run, values)) out.setError(EIO);
    out << "Run " << run << '\n' << times.size() << '\n';
    auto value = values.begin();
    for (const double time : times) {
      out << "t=" << time << '\t';
      for (std::size_t i = 0; i < outputNames_.size(); ++i) out << *value++ << '\t';
      out << '\n';
    }
  }
  out << RememberedDirectories::get(RememberedDirectories::Model) << '\n';
  out << RememberedDirectories::get(RememberedDirectories::ModelOutput) << '\n';
}

std::uint64_t recordBytes(const ModelConfiguration& model) {
  constexpr std::uint64_t kNumber = 9;  // of six digits, the tab behind it included
  std::uint64_t lines = 0;
  for (std::int32_t run = 0; run < model.runCount(); ++run) lines += static_cast<std::uint64_t>(model.timeCount(run));
  return lines * static_cast<std::uint64_t>(model.outputCount() + 2) * kNumber;
}

bool ModelConfiguration::read(TextReader& in) {
  *this = ModelConfiguration();
  in.skipLine();  // the empty line that stands before the record
  in.readLine(executable, kMaxPath);
  in.readLine(outputFile, kMaxPath);
  in >> kind >> spreadsheet;
  checkRange(in, kind, kNoModelToStart);
  checkRange(in, spreadsheet, 1);
  if (in.ok() && kind == kInternalModel) {
    in.skipLine();
    internalModel_ = std::make_unique<InternalModel>();
    internalModel_->read(in);
  }
  std::int32_t runs = 0;
  std::int32_t outputs = 0;
  in >> runs >> outputs;
  if (runs < 0 || outputs < 0) in.setFail();
  in.skipLine();
  readNames(in, outputs);
  in >> timeMode;
  checkRange(in, timeMode, kSharedGrid);
  readRuns(in, runs);
  std::string modelDirectory;
  std::string outputDirectory;
  in.skipLine();
  in.readLine(modelDirectory, kMaxDirectory);
  in.readLine(outputDirectory, kMaxDirectory);
  if (in.fail()) return false;
  RememberedDirectories::set(RememberedDirectories::Model, modelDirectory);
  RememberedDirectories::set(RememberedDirectories::ModelOutput, outputDirectory);
  return true;
}

void ModelConfiguration::readNames(TextReader& in, std::int32_t count) {
  std::string line;
  for (std::int32_t i = 0; i < count && in.readLineCut(line, kKeptName); ++i) outputNames_.push_back(line);
}

void ModelConfiguration::readRuns(TextReader& in, std::int32_t count) {
  std::vector<double> times;
  std::vector<double> row(outputNames_.size());
  for (std::int32_t run = 0; run < count && in.ok(); ++run) {
    std::int32_t points = 0;
    in.skipLine();
    in.skipLine();  // "Run" and its number
    in >> points;
    if (points < 0) in.setFail();
    times.clear();
    for (std::int32_t i = 0; i < points && in.ok(); ++i) {
      double time = 0.0;
      in.skipPast('=', kAnyDistance);
      in >> time;
      times.push_back(time);
      for (double& value : row) in >> value;
      if (in.ok() && !dataFile_.append(row.data(), row.size())) in.setFail();
    }
    if (in.ok()) runTimes_.addRuns(1, times);
  }
  // Whoever reads results relies on what the mode promises.
  if (timeMode == kNoTimeAxis && runCount() > 0 && timeCount(0) != 1) in.setFail();
  if ((timeMode == kNoTimeAxis || timeMode == kSharedGrid) && !runTimes_.allEqual()) in.setFail();
}

}  // namespace tarvex
