#include "postproc/SensitivityStats.h"

#include "base/TextReader.h"
#include "base/TextRules.h"
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
constexpr LineRule kRecordRule{"the name of a factor, group or term", kMaxTextChars};
constexpr LineRule kMemberRule{"the name of a member of a term", kMaxTextChars};
constexpr std::string_view kIndexesFollow = "indexes = yes";
constexpr std::string_view kNoIndexes = "indexes = no";

FactorKind kindOf(const Factor& factor) {
  if (factor.isConstant()) return FactorKind::Constant;
  return factor.isRelation() ? FactorKind::Relation : FactorKind::Uncertain;
}

constexpr std::string_view kStopped = "The computation was stopped.";

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

bool SensitivityStats::compute(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  clear();
  if (computeAll(prep, outputs, progress)) return true;
  const std::string reason = progress.stopped() ? std::string(kStopped) : errorText;
  clear();
  return fail(reason);
}

bool SensitivityStats::computeColumns(const OutputTable& outputs, const Progress& progress, const ColumnWork& work) {
  for (std::int32_t variable = 0; variable < variableCount; ++variable) {
    if (!progress.report(variable, variableCount)) return false;
    const double* const runs = outputs.columnValues(variable);
    if (runs == nullptr) return fail(outputs.errorText());
    const double from = static_cast<double>(variable) / variableCount;
    if (!work(variable, runs, progress.part(from, (variable + 1.0) / variableCount))) return false;
  }
  computed = true;
  return progress.report(1.0);
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

std::string SensitivityStats::notComputedReason(std::int32_t, std::int32_t) const {
  return {};
}

std::string_view SensitivityStats::kindSeparator() const {
  return kValueSeparator;
}

void SensitivityStats::writeHeader(TextWriter& out) const {
  out << factorCount << '\n' << variableCount << '\n';
}

void SensitivityStats::readHeader(TextReader& in) {
  in.expect("the number of factors") >> factorCount;
  in.expect("the number of variables") >> variableCount;
}

void SensitivityStats::write(TextWriter& out) const {
  writeHeader(out);
  if (records.empty()) {
    out << kNoIndexes << '\n';
    return;
  }
  out << kIndexesFollow;
  for (const IndexRecord& record : records) {
    out << '\n';
    kRecordRule.write(out, record.name);
    if (hasGroupNames()) {
      out << record.groupNames.size() << '\n';
      for (const std::string& name : record.groupNames) kMemberRule.write(out, name);
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
  in.expect("whether indexes follow").readLine(line, kMaxTextChars);
  // Anything else than the announcement, a damaged one too, means a block without measures.
  if (in.fail() || line != kIndexesFollow) return;
  const std::int32_t count = recordsInFile();
  in.checkCount(count, kMinNumberBytes);
  for (std::int32_t i = 0; i < count && in.ok() && readRecord(in);) ++i;
  if (in.ok()) readTail(in);
  if (in.fail())
    clear();
  else
    computed = true;
}

bool SensitivityStats::readRecord(TextReader& in) {
  IndexRecord record;
  if (!kRecordRule.read(in, record.name)) return false;
  if (record.name.empty()) return in.refuse("the name of a factor, group or term must not be empty");
  if (variableCount < 1)
    return in.refuse("the number of variables of a record must be at least 1, not " + std::to_string(variableCount));
  if (hasGroupNames() && !readMembers(in, record.groupNames)) return false;
  std::int32_t kind = 0;
  if ((in.expect("the kind of a factor") >> kind).fail()) return false;
  constexpr auto kLastKind = static_cast<std::int32_t>(FactorKind::Uncertain);
  if (kind < 0 || kind > kLastKind)
    return in.refuse("the kind of a factor must be 0 to 3, not " + std::to_string(kind));
  const std::int64_t count = std::int64_t{variableCount} * slotsOf(record);
  if (!in.checkCount(count, kMinNumberBytes)) return false;
  record.kind = static_cast<FactorKind>(kind);
  record.values.resize(static_cast<std::size_t>(count));
  for (double& value : record.values) in.expect("a measure") >> value;
  finishNumberLine(in);
  if (in.fail()) return false;
  records.push_back(std::move(record));
  return true;
}

bool SensitivityStats::readMembers(TextReader& in, std::vector<std::string>& names) {
  std::int32_t count = 0;
  in.expect("the number of members of a term") >> count;
  finishNumberLine(in);
  if (!in.checkCount(count, 1)) return false;
  std::string name;
  for (std::int32_t i = 0; i < count && kMemberRule.read(in, name); ++i) names.push_back(name);
  return in.ok();
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
