#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Changes.h"
#include "app/PostProcessor.h"
#include "panels/vels/PUaSetting.h"
#include "panels/vels/TimeSlider.h"
#include "plots/histogramPlots.h"
#include "postproc/Quantiles.h"
#include "postproc/TimeBands.h"
#include "toolkit/Panel.h"

class QLineEdit;

namespace tarvex {

class ResultDesk;
class RunController;

// Uncertainty of the analysed variables, one at a time: statistics, curves, the probability of an interval, the points
// of the curves, quantiles. It shows the analysis that it was opened for, and says when the project has moved on.
class PUaSingle : public Panel {
 public:
  // Requires: a snapshot with statistics and its table, and a variable of it.
  PUaSingle(ResultDesk& desk, std::shared_ptr<const AnalysisSnapshot> analysis, std::int32_t variable);
  ~PUaSingle() override;
  QString helpTopic() const override;

 protected:
  bool closing() override;

 private:
  enum Page { kChartPage, kPointsPage, kQuantilePage, kTimesPage };

  RunController& controller();
  void addPages();
  void registerAll();
  void changed(Changes changes);
  void say(const QString& text);

  void show(std::int32_t variable);
  void showStatistics();
  void showForm(HistogramForm form);
  void showChart();
  Figure figure();
  void showPoints();
  void showBounds();
  void boundSet();
  void choose();
  void chooseVariable();
  void chooseSeveral();
  void settings();
  void setLevels(const UaSettings& settings);
  QString whyNotLogarithmic() const;
  void saveTable();

  void prepareQuantiles();
  void quantiles();
  bool readRequest(QuantileRequest& request);

  void pageChanged();
  void showTimes();
  bool readTimes(const std::string& output);
  void drawTimes();

  ResultDesk& desk_;
  std::shared_ptr<const AnalysisSnapshot> analysis_;
  UaStats statistics_;  // with the levels that are shown
  std::int32_t variable_ = 0;
  std::vector<std::int32_t> inChart_;
  HistogramScale scale_ = kLinearScale;
  HistogramForm form_ = HistogramForm::Area;
  std::int32_t orderedVariable_ = -1;  // that ordered_ holds
  OrderedRuns ordered_;
  bool hasTimes_;
  std::optional<TimeBands> times_;  // of the output that was last looked at over time
  TimeSlider slider_;
  std::int32_t methodId_;
  bool past_ = false;
  bool working_ = false;
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
