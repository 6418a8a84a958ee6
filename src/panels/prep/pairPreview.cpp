#include "panels/prep/pairPreview.h"

#include <memory>
#include <utility>

#include "correlation/ImanConover.h"
#include "correlation/rankCorrelation.h"
#include "factors/Distribution.h"
#include "panels/prep/CorrelationDraft.h"

namespace tarvex {
namespace {

constexpr const char* kNotDefinite =
    "The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated.";

bool previewLink(const CorrelationDraft& draft, int first, int second, Distribution& one, Distribution& other,
                 PairPreview& preview, std::string& message) {
  if (draft.node(second).parent == first) {
    preview.asked = draft.node(second).correlation;
    return previewTreeLink(one, other, preview.asked, preview.points, message);
  }
  if (draft.node(first).parent == second) {
    preview.asked = draft.node(first).correlation;
    const bool made = previewTreeLink(other, one, preview.asked, preview.points, message);
    std::swap(preview.points.x, preview.points.y);
    return made;
  }
  message = one.name + " and " + other.name + " are not linked to each other in the dependence tree.";
  return false;
}

bool previewStein(const CorrelationDraft& draft, int first, int second, Distribution& one, Distribution& other,
                  PairPreview& preview, std::string& message) {
  if (!previewSteinRanks(one, other, draft.stein(), first, second, preview.points, message)) return false;
  std::vector<double> x;
  std::vector<double> y;
  const sampValues& stein = draft.stein().steinInfo;
  if (!stein.getColumn(draft.places()[static_cast<std::size_t>(first)], x) ||
      !stein.getColumn(draft.places()[static_cast<std::size_t>(second)], y)) {
    message = stein.errorText();
    return false;
  }
  preview.asked = rankCorrelation(x, y);
  return true;
}

}  // namespace

bool previewPair(const CorrelationDraft& draft, int first, int second, PairPreview& preview, std::string& message) {
  preview = {};
  message = "Choose two factors.";
  if (first < 0 || second < 0 || first == second) return false;
  const int firstPlace = draft.places()[static_cast<std::size_t>(first)];
  const int secondPlace = draft.places()[static_cast<std::size_t>(second)];
  const std::unique_ptr<Factor> firstCopy = draft.factors().factor(firstPlace).clone();
  const std::unique_ptr<Factor> secondCopy = draft.factors().factor(secondPlace).clone();
  auto* const one = dynamic_cast<Distribution*>(firstCopy.get());
  auto* const other = dynamic_cast<Distribution*>(secondCopy.get());
  if (one == nullptr || other == nullptr) return false;
  switch (draft.mode) {
    case kDependenceTree:
      return previewLink(draft, firstPlace, secondPlace, *one, *other, preview, message);
    case kSteinSample:
      return previewStein(draft, first, second, *one, *other, preview, message);
    case kImanConover: {
      const std::vector<int> rows = draft.correlatedRows();
      message = kNotDefinite;
      if (!rows.empty() && !ImanConover(draft.matrixOf(rows), static_cast<std::int32_t>(rows.size())).isValid())
        return false;
      preview.asked = static_cast<double>(draft.at(first, second));
      break;
    }
    default:
      break;
  }
  return previewRankCorrelation(*one, *other, static_cast<float>(preview.asked), preview.points, message);
}

}  // namespace tarvex
