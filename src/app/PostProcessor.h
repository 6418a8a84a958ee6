#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "postproc/OutputTable.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"
#include "postproc/VelsConfiguration.h"

namespace tarvex {

class OutputVariables;
class ProjectConfiguration;

// What an analysis of a finished run is to compute.
struct AnalysisRequest {
  std::vector<std::string> variables = {};  // empty: every output, at its maximum where it has a time axis
  bool uncertainty = true;
  bool sensitivity = true;
  std::optional<double> tchebyConfidence = {};      // level of both bounds on the mean
  std::optional<double> kolmogorovConfidence = {};  // level of the other
  std::optional<double> alpha = {};                 // confidence of the significance tests
};

// What was selected and computed at one moment. It never changes: whoever holds it goes on showing that moment.
struct AnalysisSnapshot {
  std::vector<VelsOutputRecord> outputs;                // all of the model
  std::vector<std::string> variables;                   // the selected ones, in order
  UaStats uncertainty;                                  // without variables: not computed
  std::shared_ptr<const SensitivityStats> sensitivity;  // null: not computed
  std::shared_ptr<const OutputTable> table;             // a row a run, a column a variable; null: not built
};

// The one owner of what is analysed of a project: selected variables, their values run by run, statistics, levels, and
// which of these still fit the selection. The project keeps what its file keeps; everything that reads or changes that
// goes through here. Operations that fail say why in `message`, a sentence for the user, and leave everything as it
// was.
class PostProcessor {
 public:
  // The project outlives it. After any change of sample or results from outside: reset().
  explicit PostProcessor(ProjectConfiguration& project) : project_(project) {}
  void reset();

  // Why nothing can be analysed; empty when it can.
  std::string whyNot() const;
  const std::vector<std::string>& variables() const;
  // Whether the block is there and is that of the selected variables.
  bool hasUncertainty() const;
  bool hasMeasures() const;

  // Selects the variables; blocks that don't fit them count as not computed. All texts must be understood.
  [[nodiscard]] bool select(const std::vector<std::string>& texts, std::string& message);
  // Selects the variables and computes what is asked, all or nothing. A block that isn't asked for stays where it still
  // fits. A message on success is a warning.
  [[nodiscard]] bool compute(const AnalysisRequest& request, const Progress& progress, std::string& message);
  // Computes the blocks of the selected variables that aren't there. The same for `message`.
  [[nodiscard]] bool complete(const Progress& progress, std::string& message);
  // Sees to it that the measures of one variable are there, computing them for it alone when it isn't among the
  // analysed ones. An empty name means the first variable. `variable` becomes its place.
  [[nodiscard]] bool provideMeasures(const std::string& name, const Progress& progress, std::int32_t& variable,
                                     std::string& message);

  // Sees to it that the snapshot has its table: the values of the selected variables.
  [[nodiscard]] bool provideTable(const Progress& progress, std::string& message);
  // Decides the significance of the regression measures anew at another confidence; nothing else is computed, and what
  // is selected stays. True, too, when it is the confidence in force.
  [[nodiscard]] bool applyAlpha(double alpha, const Progress& progress, std::string& message);

  // The present moment. The same object as long as nothing changes: that is how a holder sees that its own is past.
  std::shared_ptr<const AnalysisSnapshot> snapshot();

 private:
  [[nodiscard]] bool takeTexts(const std::vector<std::string>& texts, OutputVariables& variables,
                               std::string& message) const;
  [[nodiscard]] bool buildTable(OutputVariables& variables, const Progress& progress, std::string& message);
  [[nodiscard]] bool computeBlocks(const AnalysisRequest& request, const OutputTable& table, const Progress& progress,
                                   VelsConfiguration& vels, std::string& message) const;
  void keep(VelsConfiguration vels);

  ProjectConfiguration& project_;
  std::shared_ptr<const OutputTable> table_;  // of tableTexts_; null: not built
  std::vector<std::string> tableTexts_;
  std::shared_ptr<const AnalysisSnapshot> snapshot_;  // of now; null: not made yet
};

}  // namespace tarvex
