#include "postproc/SensitivityStats.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/NumberLine.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxTextChars = 4095;
constexpr std::string_view kIndexesFollow = "indexes = yes";
constexpr std::string_view kNoIndexes = "indexes = no";
constexpr std::uint64_t kMinNumberBytes = 2;  // a digit and a blank

FactorKind kindOf(const Factor& factor) {
  if (factor.isConstant()) return FactorKind::Constant;
  return factor.isRelation() ? FactorKind::Relation : FactorKind::Uncertain;
}

bool isKind(std::int32_t number) {
  return number >= static_cast<std::int32_t>(FactorKind::Constant) &&
         number <= static_cast<std::int32_t>(FactorKind::Uncertain);
}

}  // namespace

void SensitivityStats::clear() {
  records.clear();
  computed = false;
  errorText = "No errors";
}

bool SensitivityStats::fail(std::string_view reason) {
  errorText = reason;
  computed = false;
  return false;
}

bool SensitivityStats::computeColumns(const OutputTable& outputs, const ColumnWork& work) {
  std::vector<double> runs;
  for (std::int32_t variable = 0; variable < variableCount; ++variable) {
    if (!outputs.getColumn(variable, runs)) {
      records.clear();
      return fail(outputs.errorText());
    }
    work(variable, runs);
  }
  computed = true;
  return true;
}

void SensitivityStats::makeFactorRecords(const PrepConfiguration& prep) {
  factorCount = prep.factors.factorCount();
  records.assign(static_cast<std::size_t>(factorCount), {});
  for (std::int32_t i = 0; i < factorCount; ++i) {
    IndexRecord& record = records[static_cast<std::size_t>(i)];
    record.name = prep.factors.factor(i).name;
    record.kind = kindOf(prep.factors.factor(i));
    record.values.assign(static_cast<std::size_t>(variableCount) * static_cast<std::size_t>(slotsOf(record)), 0.0);
  }
}

bool SensitivityStats::slotValues(std::int32_t variable, std::int32_t slot, std::vector<double>& values) const {
  if (!computed || variable < 0 || variable >= variableCount || slot < 0) return false;
  std::vector<double> found;
  found.reserve(records.size());
  bool known = false;
  for (const IndexRecord& record : records) {
    const std::int32_t slots = slotsOf(record);
    const std::size_t at =
        static_cast<std::size_t>(variable) * static_cast<std::size_t>(slots) + static_cast<std::size_t>(slot);
    const bool present = slot < slots && at < record.values.size();
    found.push_back(present ? record.values[at] : 0.0);
    known = known || present;
  }
  if (!known) return false;
  values = std::move(found);
  return true;
}

std::string_view SensitivityStats::kindSeparator() const {
  return kValueSeparator;
}

void SensitivityStats::writeHeader(TextWriter& out) const {
  out << factorCount << '\n' << variableCount << '\n';
}

void SensitivityStats::readHeader(TextReader& in) {
  in >> factorCount >> variableCount;
}

void SensitivityStats::write(TextWriter& out) const {
  writeHeader(out);
  if (records.empty()) {
    out << kNoIndexes << '\n';
    return;
  }
  out << kIndexesFollow;
  for (const IndexRecord& record : records) {
    out << '\n' << record.name << '\n';
    if (hasGroupNames()) {
      out << record.groupNames.size() << '\n';
      for (const std::string& name : record.groupNames) out << name << '\n';
    }
    out << static_cast<std::int32_t>(record.kind) << kindSeparator();
    for (const double value : record.values) out << value << kValueSeparator;
  }
  out << '\n';
  writeTail(out);
}

void SensitivityStats::read(TextReader& in) {
  clear();
  std::string line;
  readHeader(in);
  finishNumberLine(in);
  in.readLine(line, kMaxTextChars);
  // Anything else than the announcement, a damaged one too, means a block without measures.
  if (in.fail() || line != kIndexesFollow) return;
  const std::int32_t count = recordsInFile();
  in.checkCount(count, kMinNumberBytes);
  for (std::int32_t i = 0; i < count && in.ok(); ++i) readRecord(in);
  if (in.ok()) readTail(in);
  if (in.fail())
    clear();
  else
    computed = true;
}

void SensitivityStats::readRecord(TextReader& in) {
  IndexRecord record;
  std::string line;
  in.readLine(record.name, kMaxTextChars);
  if (record.name.empty() || variableCount < 1) in.setFail();
  if (hasGroupNames()) {
    std::int32_t groupCount = 0;
    in >> groupCount;
    finishNumberLine(in);
    in.checkCount(groupCount, 1);
    for (std::int32_t i = 0; i < groupCount && in.readLine(line, kMaxTextChars); ++i) record.groupNames.push_back(line);
  }
  std::int32_t kind = 0;
  in >> kind;
  if (!isKind(kind)) in.setFail();
  const std::int64_t count = std::int64_t{variableCount} * slotsOf(record);
  if (in.fail() || !in.checkCount(count, kMinNumberBytes)) return;
  record.kind = static_cast<FactorKind>(kind);
  record.values.resize(static_cast<std::size_t>(count));
  for (double& value : record.values) in >> value;
  finishNumberLine(in);
  if (in.ok()) records.push_back(std::move(record));
}

std::unique_ptr<SensitivityStats> makeSensitivityForMethod(std::int32_t methodId) {
  switch (methodId) {
    case MethodId::kFast:
      return std::make_unique<FastStats>();
    case MethodId::kMorris:
      return std::make_unique<MorrisStats>();
    case MethodId::kRepLatin:
      return std::make_unique<ImportanceStats>();
    case MethodId::kSobol:
      return std::make_unique<SobolStats>();
    case MethodId::kFixed:
    case MethodId::kLatin:
    case MethodId::kLpTau:
    case MethodId::kRandom:
      return std::make_unique<RegressionStats>();
    default:
      return nullptr;
  }
}

std::unique_ptr<SensitivityStats> makeSensitivityOfType(std::int32_t typeId) {
  switch (typeId) {
    case SensitivityStats::kRegression:
      return std::make_unique<RegressionStats>();
    case SensitivityStats::kMorris:
      return std::make_unique<MorrisStats>();
    case SensitivityStats::kFast:
      return std::make_unique<FastStats>();
    case SensitivityStats::kImportance:
      return std::make_unique<ImportanceStats>();
    case SensitivityStats::kSobol:
      return std::make_unique<SobolStats>();
    default:
      return nullptr;
  }
}

}  // namespace tarvex
