#pragma once

#include "panels/sampling/PMethod.h"

namespace tarvex {

// The panel of FAST: the test, its runs, and the groups of the test on groups.
class PFast : public PMethod {
 public:
  PFast(const Display& display, const MethodContext& context, QWidget* parent);

 protected:
  SamplerSettings read(Refusal& refusal) override;
  std::unique_ptr<Sampler> make(const SamplerSettings& settings, Refusal& refusal) override;
  void showState(const SamplerSettings& settings) override;

 private:
  void newGroup();
  void modify();
  void delGroup();
  int selectedGroup();
  QString nameProblem(const std::string& name) const;
  bool editMembers(int group);
  void groupsChanged(int selected);

  std::vector<NamedGroup> groups_;
  bool emptied_ = false;  // the last group was deleted
};

}  // namespace tarvex
