#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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
  std::vector<double> values;            // variable after variable, in each the class's slots
  std::vector<std::string> groupNames;   // the factors of a term; Sobol only
};

// The result of a sensitivity analysis; its class follows the sampling method.
class SensitivityStats {
 public:
  enum TypeId : std::int32_t { kRegression = 0, kMorris = 1, kFast = 2, kImportance = 3, kSobol = 4 };

  virtual ~SensitivityStats() = default;
  virtual std::unique_ptr<SensitivityStats> clone() const = 0;

  // Computes all measures of `outputs` (a column a variable) on the sample and the design of `prep`. False on failure,
  // with the reason in errorText; `computed` is then false.
  virtual bool compute(const PrepConfiguration& prep, const OutputTable& outputs) = 0;
  virtual void clear();

  // The statistics block, typeId's line apart.
  virtual void write(TextWriter& out) const = 0;
  virtual void read(TextReader& in) = 0;

  TypeId typeId() const { return typeId_; }
  std::int32_t variableCount = 0;
  std::int32_t factorCount = 0;
  std::vector<IndexRecord> records;
  bool computed = false;
  std::string errorText = "No errors";

 protected:
  explicit SensitivityStats(TypeId id) : typeId_(id) {}
  SensitivityStats(const SensitivityStats&) = default;

 private:
  TypeId typeId_;
};

// The class for a sampling method (0 to 7), or for a number of a file; null for any other number.
std::unique_ptr<SensitivityStats> makeSensitivityForMethod(std::int32_t methodId);
std::unique_ptr<SensitivityStats> makeSensitivityOfType(std::int32_t typeId);

}  // namespace tarvex
