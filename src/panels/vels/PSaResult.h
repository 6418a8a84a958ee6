#pragma once

#include <memory>
#include <optional>

#include "app/Changes.h"
#include "panels/vels/TimeSlider.h"
#include "panels/vels/saKinds.h"
#include "plots/Figure.h"
#include "plots/MeasureDisplay.h"
#include "postproc/SensitivityStats.h"
#include "toolkit/Panel.h"

namespace tarvex {

struct AnalysisSnapshot;
class ResultDesk;
class SaTable;

// What the panels of sensitivity measures share: a variable, its measures as a picture and as sheets, which of the
// factors are shown and how. By itself it is the panel of all methods but those with regression measures. It shows what
// was computed when it opened; a panel whose sample or selection is past says so and stays.
class PSaResult : public Panel {
 public:
  // Requires: measures of the selected variables.
  PSaResult(ResultDesk& desk, const SaKind& kind);
  ~PSaResult() override;

 protected:
  // For members, whose constructors call start() last.
  struct Member {};
  PSaResult(ResultDesk& desk, const SaKind& kind, Member isMember);
  void start(std::vector<PanelCallback> more);

  // The measures that are drawn in a form; those of curves and forecasts are one.
  virtual std::vector<std::int32_t> slots(SaForm form) const;
  // What else follows the variable or the measures.
  virtual void showState() {}
  void refresh();

  ResultDesk& desk() { return desk_; }
  const std::shared_ptr<const AnalysisSnapshot>& snapshot() const { return snapshot_; }
  const SensitivityStats& stats() const;
  std::int32_t variable() const { return variable_; }
  // Sample, results or selection aren't those any more that it shows.
  bool isPast() const { return subscription_ == nullptr; }
  std::string variableName() const;
  SaForm form() const { return kind_.forms[form_]; }
  // A measure of the result, as the title of a table or a saved text.
  virtual std::int32_t measure() const { return slots(SaForm::Curves).front(); }

 private:
  void addPages();
  void fillLists();
  void offerVariables();
  void showVariable(std::int32_t variable);
  void changeVariable(const char* gadgetName);
  void changePie();
  void changeOrder();
  void visualize();
  void switchNorm();
  void saveImg();
  void saveTable();
  void doppioClick();
  void followController(Changes changes);
  void markRecord(int record);
  std::optional<TimedVariables> timesOfVariable() const;
  QString whyNot(SaForm form) const;
  Figure figure(const SaView& chart, ColourSet colours) const;
  void showCharts();
  void showSheets();

  ResultDesk& desk_;
  const SaKind& kind_;
  std::shared_ptr<const AnalysisSnapshot> snapshot_;
  std::vector<std::int32_t> variables_;  // the shown ones, by place
  std::int32_t variable_ = 0;
  TimeSlider slider_;
  std::size_t form_ = 0;  // place among the kind's
  MeasureDisplay shown_;
  std::vector<std::shared_ptr<SaTable>> tables_;  // of the kind's sheets
  std::size_t sheet_ = 0;                         // in which a row was chosen last
  bool runsChanged_ = false;                      // sample or results, since the panel opened
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
