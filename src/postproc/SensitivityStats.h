#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Progress.h"
#include "postproc/OutputTable.h"

namespace tarvex {

class PrepConfiguration;
class TextReader;
class TextWriter;

enum class FactorKind : std::int32_t { Constant = 0, Relation = 1, Correlated = 2, Uncertain = 3 };

// The measures of one factor, group or term.
struct IndexRecord {
  std::string name;
  FactorKind kind = FactorKind::Uncertain;
  std::vector<double> values;           // variable after variable, in each the class's slots
  std::vector<std::string> groupNames;  // the factors of a term; Sobol only
};

// The result of a sensitivity analysis; its class follows the sampling method.
class SensitivityStats {
 public:
  enum TypeId : std::int32_t { kRegression = 0, kMorris = 1, kFast = 2, kImportance = 3, kSobol = 4 };

  virtual ~SensitivityStats() = default;
  virtual std::unique_ptr<SensitivityStats> clone() const = 0;

  // Computes all measures of `outputs` (a column a variable) on the sample and the design of `prep`. False on a failure
  // or a stop, with the reason in errorText; nothing is then computed: whoever wants to keep what there was computes
  // into another object.
  [[nodiscard]] bool compute(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress = {});
  // Drops the measures. The numbers of factors and variables stay, as what the block's header says of the run.
  virtual void clear();

  // One double per record: the value of `slot` for a variable, 0.0 for a record that has no such slot. False, with
  // `values` as it was, when nothing is computed or the variable or the slot is out of range.
  [[nodiscard]] bool slotValues(std::int32_t variable, std::int32_t slot, std::vector<double>& values) const;

  // Why a slot of a variable holds no measure though a number stands there; empty where it has one. A property of what
  // is stored, so that it is known of a file, too.
  virtual std::string notComputedReason(std::int32_t variable, std::int32_t slot) const;

  // The statistics block, typeId's line apart. read() works on a fresh object; a failed reader leaves it cleared.
  void write(TextWriter& out) const;
  void read(TextReader& in);

  TypeId typeId() const { return typeId_; }
  std::int32_t variableCount = 0;
  std::int32_t factorCount = 0;
  std::vector<IndexRecord> records;
  bool computed = false;
  std::string errorText = "No errors";

  // Doubles per variable in `values` of a record.
  virtual std::int32_t slotsOf(const IndexRecord& record) const = 0;

 protected:
  static constexpr std::uint64_t kMinNumberBytes = 2;  // of a number in a file: a digit and a blank

  explicit SensitivityStats(TypeId id) : typeId_(id) {}
  SensitivityStats(const SensitivityStats&) = default;

  // What compute() is in each class, on a cleared object. False with the reason in errorText, or when stopped.
  virtual bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) = 0;

  // A fresh record per factor of the list, in list order, all its values 0.0.
  void makeFactorRecords(const PrepConfiguration& prep);
  bool fail(std::string_view reason);  // sets errorText and returns false
  // Hands the columns of `outputs` to `work`, one at a time with its part of the progress, and then counts as computed.
  // False when a column can't be read or `work` gives up. `runs` is the column in the window of `outputs`, which `work`
  // leaves alone.
  using ColumnWork = std::function<bool(std::int32_t variable, const double* runs, const Progress& progress)>;
  bool computeColumns(const OutputTable& outputs, const Progress& progress, const ColumnWork& work);

  // What distinguishes the classes' blocks: the numbers of the header, how many records follow, whether a record lists
  // its group, and what stands behind the records.
  virtual void writeHeader(TextWriter& out) const;
  virtual void readHeader(TextReader& in);
  virtual std::int32_t recordsInFile() const { return factorCount; }
  virtual bool hasGroupNames() const { return false; }
  virtual std::string_view kindSeparator() const;
  virtual void writeTail(TextWriter&) const {}
  virtual void readTail(TextReader&) {}

 private:
  bool readRecord(TextReader& in);
  static bool readMembers(TextReader& in, std::vector<std::string>& names);

  TypeId typeId_;
};

// Between the numbers of a block, and behind the last of a line.
inline constexpr std::string_view kValueSeparator = "\t \t";

// The class for a sampling method (0 to 7), or for a number of a file; null for any other number.
std::unique_ptr<SensitivityStats> makeSensitivityForMethod(std::int32_t methodId);
std::unique_ptr<SensitivityStats> makeSensitivityOfType(std::int32_t typeId);

}  // namespace tarvex
