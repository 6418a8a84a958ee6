#pragma once

#include <QMetaObject>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "panels/vels/TimeChoice.h"
#include "postproc/TimedVariables.h"

class QLabel;
class QSlider;

namespace tarvex {

struct AnalysisSnapshot;
class Panel;
class ResultDesk;
struct RunTable;

// The outputs that there were when an analysis was made.
std::vector<std::string> outputNamesOf(const AnalysisSnapshot& analysis);

// The slider of a result panel, HsTime between LTime and MlTime, that picks the time of what is shown: the panel's
// variables that are one output at several times. All sliders of a desk move together, as far as their panels have a
// variable at the time. Without such variables it says why it can't be moved; where the results have no times at all it
// isn't there.
class TimeSlider {
 public:
  // Gets the place of the variable that is to be shown.
  using Show = std::function<void(std::int32_t variable)>;

  // The panel and the desk outlive it.
  TimeSlider(Panel& panel, ResultDesk& desk, Show show);
  ~TimeSlider();
  TimeSlider(const TimeSlider&) = delete;
  TimeSlider& operator=(const TimeSlider&) = delete;

  void setVariables(const std::vector<std::string>& variables, const std::vector<std::string>& outputs);
  // The variables among the columns of a table, whose places are then meant.
  void setVariables(const RunTable& table, const std::vector<std::string>& outputs);
  // The panel shows this one, for whatever reason; -1: none, or several.
  void setShown(std::int32_t variable);
  // The panel shows these: the slider is that of the first one at several times.
  void setShown(const std::vector<std::size_t>& variables);
  // The variable of the same output at the time that was picked last; -1 for none.
  std::int32_t atPicked(std::int32_t variable) const;
  // Each of them at that time, as far as there is such a variable and it isn't among them already.
  std::vector<std::size_t> allAtPicked(std::vector<std::size_t> variables) const;

 private:
  const TimedVariables* timesOf(std::int32_t variable) const;
  void moved(int place);
  void follow();

  QLabel& caption_;
  QSlider& slider_;
  QLabel& label_;
  TimeChoice& choice_;
  bool hasTimes_;
  Show show_;
  std::vector<TimedVariables> timed_;
  std::int32_t shown_ = -1;
  QMetaObject::Connection connection_;
  TimeChoice::Changed::Subscription subscription_;
};

}  // namespace tarvex
