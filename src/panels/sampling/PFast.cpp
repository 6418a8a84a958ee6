#include "panels/sampling/PFast.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

#include "factors/FactorList.h"
#include "panels/sampling/PGroupSelect.h"
#include "sampling/FastSampler.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kNoGroup = "   No group selected.";

QString membersText(const NamedGroup& group) {
  QStringList names;
  for (const std::string& factor : group.factors) names << QString::fromStdString(factor);
  return names.isEmpty() ? QString("No members") : names.join(", ");
}

}  // namespace

PFast::PFast(const Display& display, const MethodContext& context, QWidget* parent)
    : PMethod(display, methodKind(kFast), context, parent, Member()), groups_(opened().groups) {
  auto* const tests = gadget<QComboBox>("OSettings");
  for (int mode = 0; mode < tests->count(); ++mode) tests->setItemData(mode, mode);
  if (factors().correlatableCount() > FastSampler::kMaxClassicFactors) tests->removeItem(FastSampler::kClassic);
  tests->setCurrentIndex(std::max(tests->findData(static_cast<int>(opened().mode.value_or(0))), 0));
  groupsChanged(-1);
  start({{"settings",
          [this] {
            emptied_ = false;
            edited();
          }},
         {"modify", [this] { modify(); }},
         {"newGroup", [this] { newGroup(); }},
         {"delGroup", [this] { delGroup(); }}});
}

SamplerSettings PFast::read(Refusal& refusal) {
  SamplerSettings settings = PMethod::read(refusal);
  settings.mode = gadget<QComboBox>("OSettings")->currentData().toInt();
  if (settings.mode == FastSampler::kGroups) settings.groups = groups_;
  return settings;
}

std::unique_ptr<Sampler> PFast::make(const SamplerSettings& settings, Refusal& refusal) {
  std::unique_ptr<Sampler> sampler = PMethod::make(settings, refusal);
  if (!sampler || static_cast<FastSampler&>(*sampler).checkSampleSize(factors().correlatableCount())) return sampler;
  refusal = {QString::fromStdString(sampler->errorText), gadget<QLineEdit>("NExecution")};
  return nullptr;
}

void PFast::showState(const SamplerSettings& settings) {
  if (isDemo()) return;
  const QString why =
      settings.mode == FastSampler::kGroups ? QString() : QString("Groups belong to the test on groups.");
  for (const char* const name : {"MlGroups", "BNewGroup", "SlGroups"}) allow(*gadget<QWidget>(name), why);
  for (const char* const name : {"BDelete", "BModify"})
    allow(*gadget<QPushButton>(name), why.isEmpty() && emptied_ ? "There is no group any more." : why);
}

// Groups.

int PFast::selectedGroup() {
  const auto* const list = gadget<QListWidget>("SlGroups");
  return list->selectedItems().isEmpty() ? -1 : list->currentRow();
}

void PFast::groupsChanged(int selected) {
  auto* const list = gadget<QListWidget>("SlGroups");
  list->clear();
  for (const NamedGroup& group : groups_)
    (new QListWidgetItem(QString::fromStdString(group.name), list))->setToolTip(membersText(group));
  list->setCurrentRow(selected);
}

// What the method itself says of a further group of that name.
QString PFast::nameProblem(const std::string& name) const {
  FastSampler sampler;
  for (const NamedGroup& group : groups_)
    if (!sampler.addGroup(group.name)) return QString::fromStdString(sampler.errorText);
  return sampler.addGroup(name) ? QString() : QString::fromStdString(sampler.errorText);
}

void PFast::newGroup() {
  const std::optional<QString> text = Dialogs::current().askText("New group", "^Name for the new group:", window());
  if (!text) return;
  const std::string name = text->trimmed().toStdString();
  if (const QString problem = nameProblem(name); !problem.isEmpty()) return tell("Error", problem);
  groups_.push_back({name, {}});
  emptied_ = false;
  if (!editMembers(static_cast<int>(groups_.size()) - 1)) groups_.pop_back();
  groupsChanged(static_cast<int>(groups_.size()) - 1);
  edited();
}

void PFast::modify() {
  const int group = selectedGroup();
  if (group < 0) return tell("Error", kNoGroup);
  if (!editMembers(group)) return;
  groupsChanged(static_cast<int>(groups_.size()) - 1);
  edited();
}

// Kept: a group whose members were selected goes behind the others, which settles the order of the design's blocks.
bool PFast::editMembers(int group) {
  const auto place = groups_.begin() + group;
  std::vector<std::string> available;
  for (std::int32_t i = 0; i < factors().factorCount(); ++i) {
    const std::string& name = factors().factor(i).name;
    const bool isTaken = std::ranges::any_of(groups_, [&](const NamedGroup& other) {
      return std::ranges::find(other.factors, name) != other.factors.end();
    });
    if (factors().factor(i).isStochastic() && !isTaken) available.push_back(name);
  }
  PGroupSelect panel(display(), *place, available, window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return false;
  const NamedGroup changed{place->name, panel.members()};
  groups_.erase(place);
  groups_.push_back(changed);
  return true;
}

void PFast::delGroup() {
  const int group = selectedGroup();
  if (group < 0) return tell("Error", kNoGroup);
  const auto place = groups_.begin() + group;
  if (!place->factors.empty() &&
      !Dialogs::current().question("Delete Group", "  This group contains some factors.\n   Erase it anyway?", "^Yes",
                                   "^Cancel", window()))
    return;
  groups_.erase(place);
  emptied_ = groups_.empty();
  groupsChanged(std::min(group, static_cast<int>(groups_.size()) - 1));
  edited();
}

}  // namespace tarvex
