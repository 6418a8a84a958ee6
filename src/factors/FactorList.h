#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/sampValues.h"
#include "factors/Factor.h"

namespace tarvex {

// What is said to a name that another factor has.
inline constexpr const char* kNameInUse = "   The name of this factor is already in use";

// The line of a record that holds the path of a Stein file.
inline constexpr LineRule kSteinFileRule{"the name of the Stein file", 4095};

enum CorrelationMode : std::int32_t { kDependenceTree = 0, kImanConover = 1, kNoCorrelation = 2, kSteinSample = 3 };

// A number of the rank correlation matrix, both orders of the two meant. Rows and columns count correlatable factors
// alone.
struct CorrelationCell {
  std::int32_t row = 0;
  std::int32_t column = 0;
  float value = 0.0F;
};

// A factor's place in the dependence tree, parallel to the list of factors.
struct CorrelationNode {
  double correlation = 0.0;            // with the parent; 0 for a root
  std::int32_t parent = -1;            // index of the parent's factor; -1 for a root
  std::vector<std::int32_t> children;  // indices, in the order in which they were linked
};

// The ordered factors with all that correlates them: dependence tree, rank correlation matrix, Stein sample.
class FactorList {
 public:
  FactorList() = default;
  FactorList(const FactorList&) = delete;  // the Stein sample may not be copied: copyFrom()
  FactorList& operator=(const FactorList&) = delete;
  FactorList(FactorList&&) noexcept = default;
  FactorList& operator=(FactorList&&) noexcept = default;

  // Makes this a copy of `other`, without the order of a generation. On false the message is the store's.
  [[nodiscard]] bool copyFrom(const FactorList& other, std::string& message);

  std::int32_t factorCount() const { return static_cast<std::int32_t>(factors_.size()); }
  std::int32_t correlatableCount() const;  // all but constants and relations
  Factor& factor(std::int32_t i) { return *factors_[static_cast<std::size_t>(i)]; }
  const Factor& factor(std::int32_t i) const { return *factors_[static_cast<std::size_t>(i)]; }
  std::int32_t indexOf(std::string_view name) const;  // -1 when there is none

  // -1 when i is out of range, else 0 or 1.
  std::int32_t isCorrelatable(std::int32_t i) const;
  std::int32_t isRelation(std::int32_t i) const;
  std::int32_t isConstant(std::int32_t i) const;

  // Appends; a correlatable factor's matrix row is zeros with 1 on the diagonal. Requires: a node without links, or
  // one whose other ends name this factor too.
  void addFactor(std::unique_ptr<Factor> factor, CorrelationNode node = {});
  void clear();  // no factors, no correlation, no Stein sample

  // Changes of a list that is edited. Links of the tree and cells of the matrix stay with their factors; a Stein sample
  // stays too, so who changes what its columns stand for drops it first.
  //
  // Keeps the factors of these places, in this order, each place at most once. The others go with their links and
  // cells: their children become roots.
  void arrange(const std::vector<std::int32_t>& places);
  // Puts another factor in the place of one. One that isn't sampled loses links and cells.
  void replaceFactor(std::int32_t i, std::unique_ptr<Factor> factor);
  // Gives a factor another name, in the expressions of all relations that use it too. False, with the reason, when the
  // name is refused or in use, or a relation can't follow; nothing is changed then.
  [[nodiscard]] bool renameFactor(std::int32_t i, const std::string& name, std::string& message);
  // True when the correlation in force, tree or matrix, says something of the factor.
  bool isCorrelated(std::int32_t i) const;
  bool hasStein() const { return steinInfo.rows() > 0; }
  void dropStein();  // the correlation it was the mode of, too

  const CorrelationNode& node(std::int32_t i) const { return nodes_[static_cast<std::size_t>(i)]; }
  // Links `child` below `parent`, away from the parent that it had; a `parent` of -1 makes it a root. False,
  // with nothing changed, when that would close a loop, for factors that are not correlatable and for a correlation
  // outside -1 to 1.
  [[nodiscard]] bool link(std::int32_t child, std::int32_t parent, double correlation);

  // The rank correlation of two correlatable factors, counted among those only. Stored in single precision, for both
  // orders of the two. False, with nothing changed, outside -1 to 1 and for anything but 1 on the diagonal.
  float matrixAt(std::int32_t row, std::int32_t column) const;
  [[nodiscard]] bool setMatrix(std::int32_t row, std::int32_t column, float correlation);

  // The pairs that are correlated, each once, by row and then by column, which is above the row.
  std::vector<CorrelationCell> correlatedPairs() const;

  // The order in which a generation visits the factors: stochastic ones by depth in the dependence tree (roots only in
  // the other modes), then constants, then relations, list order within each. Valid between prepareOrder and
  // releaseOrder.
  void prepareOrder();
  void releaseOrder() { factorOrder_.clear(); }
  std::int32_t factorAt(std::int32_t position) const { return factorOrder_[static_cast<std::size_t>(position)]; }
  // The parent in the dependence tree; -1 for a root and in every mode but the tree's.
  std::int32_t parentOf(std::int32_t i) const;

  // The factor list record. write() leaves the stream behind the line of `correlationMode`; read() takes that line
  // whole. On false the list is only partly filled: read into a temporary. A successful read sets the class-wide
  // default truncations.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);

  std::int32_t correlationMode = kNoCorrelation;
  std::string steinFileName;
  sampValues steinInfo;  // columns are factors, rows observations

 private:
  friend class FactorListText;

  // The place of a correlatable factor among those; the matrix with these rows of it, -1 for one without correlation.
  std::int32_t matrixRowOf(std::int32_t i) const;
  void takeMatrixRows(const std::vector<std::int32_t>& rows);
  void unlink(std::int32_t i);

  CorrelationNode& nodeAt(std::int32_t i) { return nodes_[static_cast<std::size_t>(i)]; }
  void setPair(std::int32_t row, std::int32_t column, float correlation);

  std::vector<std::unique_ptr<Factor>> factors_;
  std::vector<CorrelationNode> nodes_;
  // The matrix above its diagonal: of each row the cells from there on to the last that isn't 0, and no rows behind the
  // last such one. Of thousands of factors few are correlated, and a list is copied for each step that can be undone.
  std::vector<std::vector<float>> pairs_;
  std::vector<std::int32_t> factorOrder_;
};

}  // namespace tarvex
