#include "panels/vels/TimeSlider.h"

#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>
#include <utility>

#include "app/PostProcessor.h"
#include "app/RunController.h"
#include "base/NumberText.h"
#include "panels/vels/ResultDesk.h"
#include "plots/RunTable.h"
#include "toolkit/Panel.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kNoTimes =
    "What is shown is of no time, or of one alone. Add the output at several times as variables, then choose it at one "
    "of them.";

}  // namespace

std::vector<std::string> outputNamesOf(const AnalysisSnapshot& analysis) {
  std::vector<std::string> names;
  for (const VelsOutputRecord& output : analysis.outputs) names.push_back(output.name);
  return names;
}

TimeSlider::TimeSlider(Panel& panel, ResultDesk& desk, Show show)
    : caption_(*panel.gadget<QLabel>("LTime")),
      slider_(*panel.gadget<QSlider>("HsTime")),
      label_(*panel.gadget<QLabel>("MlTime")),
      choice_(desk.time()),
      hasTimes_(desk.controller().project().model.results.hasTimeAxis()),
      show_(std::move(show)),
      connection_(QObject::connect(&slider_, &QSlider::valueChanged, &panel, [this](int place) { moved(place); })),
      subscription_(choice_.subscribe([this] { follow(); })) {}

TimeSlider::~TimeSlider() {
  QObject::disconnect(connection_);
}

void TimeSlider::setVariables(const std::vector<std::string>& variables, const std::vector<std::string>& outputs) {
  timed_ = timedVariables(variables, outputs);
  for (QWidget* const part : std::initializer_list<QWidget*>{&caption_, &slider_, &label_})
    part->setVisible(hasTimes_ || !timed_.empty());
}

void TimeSlider::setVariables(const RunTable& table, const std::vector<std::string>& outputs) {
  std::vector<std::string> variables;
  for (const RunColumn& column : table.columns) variables.push_back(column.isFactor ? std::string() : column.name);
  setVariables(variables, outputs);
}

const TimedVariables* TimeSlider::timesOf(std::int32_t variable) const {
  for (const TimedVariables& times : timed_)
    if (std::ranges::find(times.at, variable, &std::pair<double, std::int32_t>::second) != times.at.end())
      return &times;
  return nullptr;
}

void TimeSlider::setShown(std::int32_t variable) {
  shown_ = variable;
  const TimedVariables* const times = timesOf(variable);
  allow(slider_, times != nullptr ? QString() : QString(kNoTimes));
  const QSignalBlocker quiet(slider_);
  if (times == nullptr) {
    slider_.setRange(0, 0);
    label_.setText("not at several times");
    return;
  }
  const auto place = std::ranges::find(times->at, variable, &std::pair<double, std::int32_t>::second);
  const auto count = static_cast<int>(times->at.size());
  const int at = static_cast<int>(place - times->at.begin());
  slider_.setRange(0, count - 1);
  slider_.setValue(at);
  label_.setText(
      QString("%1, time %2 of %3").arg(QString::fromStdString(numberText(place->first))).arg(at + 1).arg(count));
}

void TimeSlider::setShown(const std::vector<std::size_t>& variables) {
  const auto timed = std::ranges::find_if(
      variables, [this](std::size_t variable) { return timesOf(static_cast<std::int32_t>(variable)) != nullptr; });
  setShown(timed != variables.end() ? static_cast<std::int32_t>(*timed) : -1);
}

std::int32_t TimeSlider::atPicked(std::int32_t variable) const {
  const TimedVariables* const times = timesOf(variable);
  if (times == nullptr || !choice_.time()) return -1;
  const auto place = std::ranges::find(times->at, *choice_.time(), &std::pair<double, std::int32_t>::first);
  return place != times->at.end() ? place->second : -1;
}

std::vector<std::size_t> TimeSlider::allAtPicked(std::vector<std::size_t> variables) const {
  for (std::size_t& variable : variables) {
    const std::int32_t picked = atPicked(static_cast<std::int32_t>(variable));
    if (picked >= 0 && std::ranges::find(variables, static_cast<std::size_t>(picked)) == variables.end())
      variable = static_cast<std::size_t>(picked);
  }
  return variables;
}

void TimeSlider::moved(int place) {
  const TimedVariables* const times = timesOf(shown_);
  if (times == nullptr || place < 0 || place >= static_cast<int>(times->at.size())) return;
  const auto [time, variable] = times->at[static_cast<std::size_t>(place)];
  if (choice_.time() != time) return choice_.pick(time);  // this one follows, too
  show_(variable);
}

void TimeSlider::follow() {
  const std::int32_t variable = atPicked(shown_);
  if (variable >= 0 && variable != shown_) show_(variable);
}

}  // namespace tarvex
