#include "postproc/SobolStats.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/FactorSubsets.h"
#include "postproc/MeasureSupport.h"
#include "postproc/SobolBlocks.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

// Closed indices of a term of one factor and of more.
constexpr std::int32_t kClosedOfOne = 2;
constexpr std::int32_t kClosedOfMore = 1;
constexpr std::int64_t kBlockA = 0;
constexpr std::int64_t kBlockB = 1;
constexpr std::int64_t kFirstTerm = 2;  // block

constexpr std::int64_t kOperationsATerm = 300;  // to find a term without one of its factors

}  // namespace

std::int32_t SobolStats::closedSlot(std::size_t factors) const {
  if (slotMode == kFirstAndTotal) return kIndex;
  return factors == 1 ? kClosedOfOne : kClosedOfMore;
}

double SobolStats::closedIndex(std::int32_t record, std::int32_t variable) const {
  if (record < 0 || static_cast<std::size_t>(record) >= records.size()) return 0.0;
  std::vector<double> values(records.size(), 0.0);
  const auto at = static_cast<std::size_t>(record);
  return slotValues(variable, closedSlot(records[at].groupNames.size()), values) ? values[at] : 0.0;
}

double& SobolStats::slot(std::size_t record, std::int32_t variable, std::int32_t number) {
  IndexRecord& which = records[record];
  return which.values[static_cast<std::size_t>(variable) * static_cast<std::size_t>(slotsOf(which)) +
                      static_cast<std::size_t>(number)];
}

bool SobolStats::computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  if (outputs.rows() == 0) return false;
  std::string reason;
  const auto* design = designFor<SobolSampler>(prep, outputs, reason);
  if (design == nullptr) return fail(reason);
  if (design->baseSize() < 1 || outputs.rows() % design->baseSize() != 0) return fail(kDesignDamaged);
  variableCount = outputs.columns();
  factorCount = prep.factors.factorCount();
  extra = prep.factors.correlatableCount();
  const bool done = design->designKind() == SobolSampler::kFirstAndTotal
                        ? computeFirstAndTotal(prep, *design, outputs, progress)
                        : computeTerms(prep, *design, outputs, progress);
  termCount = done ? static_cast<std::int32_t>(records.size()) : 0;
  return done;
}

bool SobolStats::computeFirstAndTotal(const PrepConfiguration& prep, const SobolSampler& design,
                                      const OutputTable& outputs, const Progress& progress) {
  slotMode = kFirstAndTotal;
  maxOrder = 0;
  const std::int64_t blocks = outputs.rows() / design.baseSize();
  if (blocks != kFirstTerm + 2 * std::int64_t{extra}) return fail(kDesignDamaged);
  makeFactorRecords(prep);
  for (IndexRecord& record : records) record.groupNames = {record.name};
  return computeColumns(outputs, progress, [&](std::int32_t variable, const double* runs, const Progress& part) {
    return firstAndTotal(variable, SobolBlocks(runs, static_cast<std::size_t>(outputs.rows()), design.baseSize()),
                         part);
  });
}

// With J the runs of B with the factor's column of A, products summed over the centred runs, a the mean and v the
// variance of a base block of n runs:
//   S = (A J - A B) / (n vA),   ST = 1 - (B J / n - aB^2) / vB
// and the mean of that and of the same with A and B exchanged.
// I. M. Sobol', Math. Modelling Comput. Exp. 1 (1993) 407; the difference of products after A. Saltelli et al., Comput.
// Phys. Commun. 181 (2010) 259.
bool SobolStats::firstAndTotal(std::int32_t variable, const SobolBlocks& blocks, const Progress& progress) {
  const double n = blocks.baseSize();
  const double vA = blocks.varianceA();
  const double vB = blocks.varianceB();
  const double base = blocks.product(kBlockA, kBlockB);
  const std::vector<SobolBlocks::FactorProducts> products = blocks.factorProducts(extra, progress);
  if (progress.stopped()) return false;
  auto next = products.begin();
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].kind != FactorKind::Uncertain) continue;
    const auto [aBlock, bBlock, aMirrored, bMirrored] = *next++;
    double& first = slot(i, variable, kIndex);
    double& total = slot(i, variable, kTotal);
    if (vA != 0.0) first = (aBlock - base) / (n * vA);
    if (vB != 0.0) total = 1.0 - (bBlock / n - blocks.meanB() * blocks.meanB()) / vB;
    // Kept: each guard looks at the other block's variance than the one that is divided by.
    if (vA != 0.0) first = (first + (bMirrored - base) / (n * vB)) * 0.5;
    if (vB != 0.0) {
      const double closedOthers = (aMirrored / n - blocks.meanA() * blocks.meanA()) / vA;
      total = (total + 1.0 - closedOthers) * 0.5;
    }
  }
  return true;
}

bool SobolStats::computeTerms(const PrepConfiguration& prep, const SobolSampler& design, const OutputTable& outputs,
                              const Progress& progress) {
  if (extra == 0) return fail("All input factors are constant");
  slotMode = kByTerm;
  maxOrder = design.order();
  // The term of all factors has no block: it is what the others leave over.
  const bool withLast = maxOrder == extra;
  const std::int32_t largest = withLast ? maxOrder - 1 : maxOrder;
  const std::int64_t termBlocks = outputs.rows() / design.baseSize() - kFirstTerm;
  const bool isOrder = maxOrder >= 1 && maxOrder <= extra;
  // A term has its own block or its complement's, so more than two terms a block can't be.
  if (!isOrder || termBlocks < (largest > 0 ? extra : 0)) return fail(kDesignDamaged);
  if (FactorSubsets::countOf(extra, largest) > 2 * termBlocks) return fail(kDesignDamaged);
  const FactorSubsets terms(extra, largest);
  const bool allFound = std::ranges::all_of(terms.all(), [&](const FactorSubsets::Subset& term) {
    return terms.numberOf(term) < termBlocks || terms.numberOf(terms.complement(term)) < termBlocks;
  });
  if (!allFound) return fail(kDesignDamaged);

  makeTermRecords(prep, terms, withLast);
  return computeColumns(outputs, progress, [&](std::int32_t variable, const double* runs, const Progress& part) {
    const SobolBlocks blocks(runs, static_cast<std::size_t>(outputs.rows()), design.baseSize());
    return closedAndTotals(variable, blocks, terms, part.part(0.0, 0.5)) &&
           indicesFromClosed(variable, blocks, terms, part.part(0.5, 1.0));
  });
}

void SobolStats::makeTermRecords(const PrepConfiguration& prep, const FactorSubsets& terms, bool withLast) {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < factorCount; ++i)
    if (prep.factors.isCorrelatable(i) == 1) names.push_back(prep.factors.factor(i).name);
  const auto add = [&](const std::vector<std::string>& factors) {
    IndexRecord record;
    record.groupNames = factors;
    for (const std::string& name : factors) record.name += (record.name.empty() ? "" : ",") + name;
    record.values.assign(static_cast<std::size_t>(variableCount) * static_cast<std::size_t>(slotsOf(record)), 0.0);
    records.push_back(std::move(record));
  };
  for (const FactorSubsets::Subset& term : terms.all()) {
    std::vector<std::string> factors;
    for (const std::int32_t position : term) factors.push_back(names[static_cast<std::size_t>(position)]);
    add(factors);
  }
  if (withLast) add(names);
}

// With J the runs of B with the term's columns of A, as they come, and products as in firstAndTotal:
//   closed = A J / n;   of one factor: ST = 1 - (B J / n - aB^2) / vB
// A design without the term's block has that of its complement C, and B C / n has the same expectation as A J / n.
bool SobolStats::closedAndTotals(std::int32_t variable, const SobolBlocks& blocks, const FactorSubsets& terms,
                                 const Progress& progress) {
  const double n = blocks.baseSize();
  WorkPace pace(progress, static_cast<std::int64_t>(terms.all().size()), 2 * static_cast<std::int64_t>(n));
  const double vB = blocks.varianceB();
  for (std::size_t i = 0; i < terms.all().size(); ++i) {
    if (!pace.step()) return false;
    const FactorSubsets::Subset& term = terms.all()[i];
    const std::int64_t block = kFirstTerm + static_cast<std::int64_t>(i);
    const bool present = block < blocks.count();
    const std::int64_t complement = present ? 0 : kFirstTerm + terms.numberOf(terms.complement(term));
    slot(i, variable, closedSlot(term.size())) =
        (present ? blocks.product(block, kBlockA) : blocks.product(complement, kBlockB)) / n;
    if (term.size() > 1) continue;
    const double others = blocks.product(block, kBlockB) / n - blocks.meanB() * blocks.meanB();
    slot(i, variable, kTotal) = vB == 0.0 ? 0.0 : 1.0 - others / vB;
  }
  return true;
}

// The index of a term is what its closed value adds to those of its parts: the alternating sum of the closed values of
// all its subsets, over vA. The closed value of the empty set is the product term aA^2 + E, with E = A B / n - aA^2.
// The sum is made for all terms at once, factor after factor: each term takes off the same term without that factor.
bool SobolStats::indicesFromClosed(std::int32_t variable, const SobolBlocks& blocks, const FactorSubsets& terms,
                                   const Progress& progress) {
  const double vA = blocks.varianceA();
  const double squaredMean = blocks.meanA() * blocks.meanA();
  const double e = blocks.product(kBlockA, kBlockB) / blocks.baseSize() - squaredMean;
  const double productTerm = squaredMean + e;
  const std::vector<FactorSubsets::Subset>& all = terms.all();
  for (std::size_t i = 0; i < all.size(); ++i) slot(i, variable, kIndex) = slot(i, variable, closedSlot(all[i].size()));
  WorkPace pace(progress, std::int64_t{extra} * static_cast<std::int64_t>(all.size()), kOperationsATerm);
  for (std::int32_t factor = 0; factor < extra; ++factor) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (!pace.step()) return false;
      if (!std::ranges::binary_search(all[i], factor)) continue;
      FactorSubsets::Subset rest = all[i];
      std::erase(rest, factor);
      slot(i, variable, kIndex) -=
          rest.empty() ? productTerm : slot(static_cast<std::size_t>(terms.numberOf(rest)), variable, kIndex);
    }
  }
  double sum = 0.0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    double& index = slot(i, variable, kIndex);
    index = vA == 0.0 ? 0.0 : index / vA;
    sum += index;
    double& closed = slot(i, variable, closedSlot(all[i].size()));
    closed = (closed - productTerm) / vA;  // Kept: a constant output divides by zero here
  }
  if (records.size() == all.size()) return true;
  slot(all.size(), variable, kIndex) = 1.0 - sum;
  slot(all.size(), variable, kTotal) = 1.0;  // all factors together, as total and as closed index
  if (extra == 1) slot(all.size(), variable, kClosedOfOne) = 1.0;
  return true;
}

void SobolStats::writeHeader(TextWriter& out) const {
  out << factorCount << '\n' << extra << '\n' << variableCount << '\n';
  out << maxOrder << '\n' << termCount << '\n' << slotMode << '\n';
}

void SobolStats::readHeader(TextReader& in) {
  in.expect("the number of factors") >> factorCount;
  in.expect("the number of uncertain factors") >> extra;
  in.expect("the number of variables") >> variableCount;
  in.expect("the order of the terms") >> maxOrder;
  in.expect("the number of terms") >> termCount;
  in.expect("the form of the terms") >> slotMode;
}

}  // namespace tarvex
