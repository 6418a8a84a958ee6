#include "panels/model/modelFile.h"

#include "base/RememberedDirectories.h"

namespace tarvex {

FileChoice modelFileChoice(const QString& title) {
  return {title,
          {{"*.imd", "internal model"}},
          QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Model))};
}

QString chooseModelFile(QWidget* parent, bool alsoOthers) {
  FileChoice choice = modelFileChoice("Select the internal model to load");
  if (alsoOthers) choice.filters.push_back({"*.*", "all files"});
  const auto chosen = Dialogs::current().chooseFile(choice, parent);
  if (!chosen) return {};
  // A directory that is gone by now leaves the old one.
  static_cast<void>(RememberedDirectories::set(RememberedDirectories::Model, chosen->directory.toStdString()));
  return chosen->path;
}

InternalModel newModelOf(const std::vector<std::string>& inputs) {
  InternalModel model;
  // One that is no name, or twice there, is left out.
  for (const std::string& name : inputs) static_cast<void>(model.addVariable(name));
  return model;
}

}  // namespace tarvex
