#include "panels/model/ModelEditing.h"

#include <utility>

namespace tarvex {

QString refusalOf(const InternalModel& model) {
  const std::string& detail = model.problem();
  const bool isTold = detail.empty() || model.errorText().find(detail) != std::string::npos;
  return QString::fromStdString(isTold ? model.errorText() : model.errorText() + '\n' + detail);
}

ModelEditing::ModelEditing(const InternalModel& model, std::function<void()> changed)
    : model_(std::make_shared<InternalModel>(model)), saved_(model_), changed_(std::move(changed)) {}

void ModelEditing::enter(const QString& name, const Shared& after) {
  const auto setter = [this](const Shared& model) {
    return [this, model] {
      model_ = model;
      changed_();
      return true;
    };
  };
  undo_.push(name, setter(model_), setter(after));
  model_ = after;
  changed_();
}

bool ModelEditing::change(const QString& name, const Operation& operation, QString& problem) {
  const auto next = std::make_shared<InternalModel>(*model_);
  if (!operation(*next)) {
    problem = refusalOf(*next);
    return false;
  }
  enter(name, next);
  return true;
}

void ModelEditing::take(const QString& name, InternalModel model) {
  enter(name, std::make_shared<InternalModel>(std::move(model)));
}

void ModelEditing::setSaved(InternalModel model) {
  saved_ = model_ = std::make_shared<InternalModel>(std::move(model));
  changed_();
}

}  // namespace tarvex
