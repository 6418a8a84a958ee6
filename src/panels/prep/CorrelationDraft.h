#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "factors/FactorList.h"

namespace tarvex {

inline constexpr int kNoParentFactor = -1;  // of a root of the tree

// The correlations of a list while a user edits them: a value that is copied for each step, in which the matrix and the
// Stein sample are shared. Factors are told by their places in the list; rows and columns of the matrix count
// correlatable factors alone.
class CorrelationDraft {
 public:
  // `factors` stays as it is, and outlives the draft and its copies.
  explicit CorrelationDraft(const FactorList& factors);

  const FactorList& factors() const { return *factors_; }
  QString name(int place) const { return QString::fromStdString(factors_->factor(place).name); }
  // The places of the factors that can be correlated, a matrix row each.
  const std::vector<int>& places() const { return places_; }
  QStringList names() const;

  std::int32_t mode = kNoCorrelation;

  // The tree. A factor stands in it as a root or below another, or outside of it.
  bool isInTree(int place) const { return inTree_[static_cast<std::size_t>(place)]; }
  const CorrelationNode& node(int place) const { return nodes_[static_cast<std::size_t>(place)]; }
  bool isWithin(int place, int ancestor) const;
  // Puts a factor below another, as its child number `at`. Requires: that one isn't within the first.
  void link(int child, int parent, std::size_t at, double correlation);
  void makeRoot(int place);
  // Out of the tree; children become roots.
  void takeOut(int place);
  int links() const;

  // The matrix. A list may have thousands of factors, of which few are correlated: what takes memory and time are those
  // few, and not the square of all.
  int order() const { return static_cast<int>(places_.size()); }
  float at(int row, int column) const;
  // The pairs that are correlated, each once; another object after each change.
  const std::shared_ptr<const std::vector<CorrelationCell>>& pairs() const { return pairs_; }
  // The last of several numbers for a pair counts; 0 takes the correlation away.
  void setCells(const std::vector<CorrelationCell>& cells);
  // The rows that hold a correlation, and the matrix of these alone, by row. It says whether the whole is valid: the
  // other rows are those of a unit matrix.
  std::vector<int> correlatedRows() const;
  std::vector<float> matrixOf(const std::vector<int>& rows) const;

  // The Stein sample, with the name of its file, in a list of the same factors.
  const FactorList& stein() const { return *stein_; }
  const std::shared_ptr<const FactorList>& sharedStein() const { return stein_; }
  // Reads another sample and chooses its correlation. On false the draft is as it was, and the message is the system's.
  [[nodiscard]] bool importStein(const std::string& path, std::string& message, const Progress& progress = {});

  // Gives a list of these factors the correlations. On false the list is as it was.
  [[nodiscard]] bool applyTo(FactorList& list, std::string& message) const;

 private:
  CorrelationNode& nodeAt(int place) { return nodes_[static_cast<std::size_t>(place)]; }
  void unlink(int place);

  const FactorList* factors_;
  std::vector<int> places_;
  std::vector<CorrelationNode> nodes_;
  std::vector<bool> inTree_;
  std::shared_ptr<const std::vector<CorrelationCell>> pairs_;  // by row, then by column, which is above the row
  std::shared_ptr<const FactorList> stein_;
};

}  // namespace tarvex
