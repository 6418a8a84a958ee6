#include "sampling/centralRun.h"

#include <algorithm>

#include "base/Cores.h"
#include "base/NumberText.h"
#include "factors/Constant.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "factors/Relation.h"

namespace tarvex {

namespace {

// At the six digits that tables show: what the search for it leaves behind them would only be in the way.
double rounded(double value) {
  double shown = value;
  return isNumber(numberText(value), shown) ? shown : value;
}

// Median and mean of a sampled factor; false when its inverse can't be made.
bool middleOf(const Factor& factor, double& median, double& mean) {
  const std::unique_ptr<Factor> copy = factor.clone();
  auto* const distribution = dynamic_cast<Distribution*>(copy.get());
  if (distribution == nullptr || (distribution->needsTable() && !distribution->prepareInverse())) return false;
  median = rounded(distribution->value(0.5));
  mean = distribution->mean();
  distribution->clearTable();
  return true;
}

// Medians and means of the sampled factors, which take most of a millisecond each.
bool middles(const FactorList& factors, std::vector<double>& middle, std::vector<double>& means, std::string& message,
             const Progress& progress) {
  constexpr std::size_t kBlock = 16;  // factors between two reports
  const std::size_t count = middle.size();
  std::vector<char> failed(count, 0);
  for (std::size_t block = 0; block < count; block += kBlock) {
    inParts(std::min(kBlock, count - block), 1, [&](std::size_t /*part*/, std::size_t first, std::size_t last) {
      for (std::size_t i = block + first; i < block + last; ++i) {
        const Factor& factor = factors.factor(static_cast<std::int32_t>(i));
        if (factor.isStochastic()) failed[i] = middleOf(factor, middle[i], means[i]) ? 0 : 1;
      }
    });
    message = kStoppedText;
    if (!progress.report(block, count)) return false;
  }
  const auto found = std::ranges::find(failed, 1);
  message = found == failed.end()
                ? ""
                : "I cannot calculate the inverse cumulative of factor " + std::to_string(found - failed.begin() + 1);
  return message.empty();
}

}  // namespace

bool centralRun(const FactorList& factors, std::vector<double>& run, std::string& message, const Progress& progress) {
  const auto count = static_cast<std::size_t>(factors.factorCount());
  std::vector<double> middle(count, 0.0);
  std::vector<double> means(count, 0.0);  // what relations read
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    const Factor& factor = factors.factor(static_cast<std::int32_t>(i));
    names.push_back(factor.name);
    if (const auto* const constant = dynamic_cast<const Constant*>(&factor)) middle[i] = means[i] = constant->value();
  }
  if (!middles(factors, middle, means, message, progress)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const Factor& factor = factors.factor(static_cast<std::int32_t>(i));
    if (!factor.isRelation()) continue;
    const std::unique_ptr<Factor> copy = factor.clone();
    auto& relation = static_cast<Relation&>(*copy);
    relation.bindNames(names);
    static_cast<void>(relation.evaluate(means.data(), middle[i]));  // one that fails is 0, as in a generation
    means[i] = middle[i];
  }
  run = std::move(middle);
  return true;
}

}  // namespace tarvex
