#include "factors/FactorProblems.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "factors/Relation.h"
#include "factors/makeFactor.h"
#include "factors/namesInText.h"

namespace tarvex {
namespace {

// Whether a record, which keeps six digits, holds all that can be sampled from.
bool keepsDigits(const Factor& factor) {
  const std::vector<Parameter> parameters = factor.parameters();
  return !parameters.empty() && std::ranges::all_of(parameters, [](const Parameter& parameter) {
    double back = 0.0;
    return isNumber(numberText(parameter.value), back) && back == parameter.value;
  });
}

// Why nothing could be sampled from a usable factor after its record was written and read; empty when it could.
std::string problemOnceSaved(const Factor& factor) {
  if (keepsDigits(factor)) return {};
  TextWriter out;
  factor.write(out);
  TextReader in = TextReader::fromText(out.text());
  const std::unique_ptr<Factor> back = makeFactor(factor.typeName);
  in.skipLine();  // the type
  if (back) back->read(in);
  const std::string problem = back && out.ok() && in.ok() ? back->parameterProblem() : "";
  return problem.empty() ? "" : "in a file, which keeps six digits, it can't be sampled any more: " + problem;
}

using Places = std::unordered_map<std::string_view, std::int32_t>;

// The relations of a list with those among them that each one's expression reads.
class RelationGraph {
 public:
  RelationGraph(const FactorList& list, const Places& places) {
    for (std::int32_t i = 0; i < list.factorCount(); ++i) {
      const auto* relation = dynamic_cast<const Relation*>(&list.factor(i));
      if (relation == nullptr) continue;
      std::vector<std::int32_t>& used = reads_[i];
      for (const auto& [name, isAssigned] : namesInText(relation->expression())) {
        const auto found = places.find(name);
        const bool isRead = !isAssigned && found != places.end() && list.isRelation(found->second) == 1;
        if (isRead) used.push_back(found->second);
      }
    }
    for (const auto& [relation, used] : reads_)
      for (const std::int32_t other : used) readBy_[other].push_back(relation);
  }

  // The relations that read each other in a circle, and what lies between two circles: whatever is left when those that
  // read nothing left, or that nothing left reads, have been taken away.
  std::vector<std::int32_t> circles() const {
    std::map<std::int32_t, bool> left;
    for (const auto& [relation, used] : reads_) left[relation] = true;
    takeAway(reads_, readBy_, left);
    takeAway(readBy_, reads_, left);
    std::vector<std::int32_t> found;
    for (const auto& [relation, isLeft] : left)
      if (isLeft) found.push_back(relation);
    return found;
  }

 private:
  using Edges = std::map<std::int32_t, std::vector<std::int32_t>>;

  // Takes away, one after the other, what has no `edges` to anything left.
  static void takeAway(const Edges& edges, const Edges& back, std::map<std::int32_t, bool>& left) {
    std::map<std::int32_t, std::size_t> open;
    std::vector<std::int32_t> free;
    for (const auto& [relation, isLeft] : left) {
      if (!isLeft) continue;
      const auto found = edges.find(relation);
      if (found != edges.end())
        open[relation] = static_cast<std::size_t>(
            std::ranges::count_if(found->second, [&left](std::int32_t other) { return left.at(other); }));
      if (open[relation] == 0) free.push_back(relation);
    }
    while (!free.empty()) {
      const std::int32_t relation = free.back();
      free.pop_back();
      left[relation] = false;
      const auto found = back.find(relation);
      if (found == back.end()) continue;
      for (const std::int32_t other : found->second)
        if (left.at(other) && --open[other] == 0) free.push_back(other);
    }
  }

  Edges reads_, readBy_;
};

class Search {
 public:
  explicit Search(const FactorList& list) : list_(list) {
    for (std::int32_t i = 0; i < list.factorCount(); ++i) places_.emplace(list.factor(i).name, i);
    circle_ = RelationGraph(list, places_).circles();
  }

  std::vector<FactorProblem> run() {
    for (std::int32_t i = 0; i < list_.factorCount(); ++i) {
      const Factor& factor = list_.factor(i);
      checkTexts(i, factor);
      const std::string problem = factor.parameterProblem();
      if (!problem.empty()) add(i, !factor.isConstant(), problem);
      if (const std::string loss = problem.empty() ? problemOnceSaved(factor) : ""; !loss.empty()) warn(i, loss);
      if (const auto* relation = dynamic_cast<const Relation*>(&factor)) checkRelation(i, *relation);
    }
    return std::move(problems_);
  }

 private:
  void add(std::int32_t i, bool isError, const std::string& text) {
    problems_.push_back({i, isError, list_.factor(i).name + ": " + text});
  }
  void warn(std::int32_t i, const std::string& text) { add(i, false, text); }

  void checkTexts(std::int32_t i, const Factor& factor) {
    for (const std::string& problem : {Factor::kNameRule.problem(factor.name), Factor::kNoteRule.problem(factor.note)})
      if (!problem.empty()) add(i, true, problem);
    const std::int32_t first = places_.at(factor.name);
    if (first != i) warn(i, "factor " + std::to_string(first + 1) + " has the same name, and relations read that one");
  }

  void checkRelation(std::int32_t i, const Relation& relation) {
    if (!relation.refusedExpression().empty())
      return warn(i, "the expression '" + relation.refusedExpression() + "' is refused (" + relation.errorText +
                         "): the value is 0");
    if (relation.expression().empty()) return warn(i, "no expression: the value is 0");
    const bool inCircle = std::ranges::binary_search(circle_, i);
    if (inCircle) warn(i, "the expression closes a circle of relations:" + circleNames());
    for (const auto& [name, isAssigned] : namesInText(relation.expression())) {
      if (isAssigned) continue;
      const auto found = places_.find(name);
      if (found == places_.end()) {
        warn(i, "'" + std::string(name) + "' is no factor and reads as 0");
        continue;
      }
      const bool isBelow = found->second > i && list_.isRelation(found->second) == 1;
      if (isBelow && !(inCircle && std::ranges::binary_search(circle_, found->second)))
        warn(i, "'" + std::string(name) + "' is a relation below and reads as 0");
    }
  }

  std::string circleNames() const {
    constexpr std::size_t kShown = 8;
    std::string names;
    for (std::size_t k = 0; k < std::min(circle_.size(), kShown); ++k) names += ' ' + list_.factor(circle_[k]).name;
    return names + (circle_.size() > kShown ? " ..." : "");
  }

  const FactorList& list_;
  Places places_;  // of the first factor of each name
  std::vector<std::int32_t> circle_;
  std::vector<FactorProblem> problems_;
};

}  // namespace

std::vector<FactorProblem> factorProblems(const FactorList& list) {
  return Search(list).run();
}

std::string lossesInFile(const FactorList& list) {
  std::vector<FactorProblem> losses;
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {
    const Factor& factor = list.factor(i);
    const std::string loss = factor.parameterProblem().empty() ? problemOnceSaved(factor) : "";
    if (!loss.empty()) losses.push_back({i, false, factor.name + ": " + loss});
  }
  return problemLines(losses, false);
}

std::string problemLines(const std::vector<FactorProblem>& problems, bool errors) {
  std::string lines;
  for (const FactorProblem& problem : problems) {
    if (problem.isError != errors) continue;
    if (!lines.empty()) lines += '\n';
    lines += problem.text;
  }
  return lines;
}

}  // namespace tarvex
