#pragma once

#include "postproc/SensitivityStats.h"

namespace tarvex {

class FactorSubsets;
class SobolBlocks;
class SobolSampler;

// Variance shares from the block design. First and total order: both indices of each factor. Up to an order: a term of
// one factor has index, total and closed index; a term of more has index and closed index.
class SobolStats : public SensitivityStats {
 public:
  enum SlotMode : std::int32_t { kFirstAndTotal = 1, kByTerm = 3 };
  // The total is that of a single factor; a term of more factors has its closed index there.
  enum Slot : std::int32_t { kIndex = 0, kTotal = 1 };

  SobolStats() : SensitivityStats(kSobol) {}
  std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<SobolStats>(*this); }
  std::int32_t slotsOf(const IndexRecord& record) const override {
    return record.groupNames.size() == 1 && slotMode != kFirstAndTotal ? 3 : 2;
  }

  // What the factors of a record explain among themselves: the first order index in the first-and-total form. 0.0 when
  // nothing is computed or out of range.
  double closedIndex(std::int32_t record, std::int32_t variable) const;

  std::int32_t maxOrder = 0;   // 0 in the first-and-total form
  std::int32_t termCount = 0;  // records
  std::int32_t slotMode = 0;
  std::int32_t extra = 0;  // uncertain factors

 protected:
  // An empty table of outputs fails without a reason.
  bool computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) override;
  void writeHeader(TextWriter& out) const override;
  void readHeader(TextReader& in) override;
  std::int32_t recordsInFile() const override { return termCount; }
  bool hasGroupNames() const override { return true; }

 private:
  bool computeFirstAndTotal(const PrepConfiguration& prep, const SobolSampler& design, const OutputTable& outputs,
                            const Progress& progress);
  bool computeTerms(const PrepConfiguration& prep, const SobolSampler& design, const OutputTable& outputs,
                    const Progress& progress);
  bool firstAndTotal(std::int32_t variable, const SobolBlocks& blocks, const Progress& progress);
  void makeTermRecords(const PrepConfiguration& prep, const FactorSubsets& terms, bool withLast);
  bool closedAndTotals(std::int32_t variable, const SobolBlocks& blocks, const FactorSubsets& terms,
                       const Progress& progress);
  bool indicesFromClosed(std::int32_t variable, const SobolBlocks& blocks, const FactorSubsets& terms,
                         const Progress& progress);
  std::int32_t closedSlot(std::size_t factors) const;
  double& slot(std::size_t record, std::int32_t variable, std::int32_t number);
};

}  // namespace tarvex
