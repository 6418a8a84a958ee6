#pragma once

#include <memory>
#include <string>

#include "panels/sampling/methodKinds.h"
#include "toolkit/Panel.h"

namespace tarvex {

class FactorList;
class Sampler;

// What a method's panel is opened with. The list must outlive the panel.
struct MethodContext {
  const FactorList* factors = nullptr;
  const Sampler* current = nullptr;  // the settings to begin with, of the panel's method; null: the method's own
  bool demo = false;                 // for reading only
};

// What the panels of all sampling methods share: settings that are edited, and what they cost. While the user types,
// the panel reads itself, tells the runs of the design and what can be computed from it, and warns; ok refuses with
// the words of the message line. By itself it is the panel of the methods that have nothing but numbers and lists.
class PMethod : public Panel {
 public:
  PMethod(const Display& display, const MethodKind& kind, const MethodContext& context, QWidget* parent);
  ~PMethod() override;

  // The accepted one. Where its settings are those that the panel was opened with, it is a copy of that sampler, whose
  // record of the generated sample stays.
  std::unique_ptr<Sampler> takeSampler();

 protected:
  // Why a panel can't be accepted.
  struct Refusal {
    QString text = {};         // empty: it can
    QWidget* where = nullptr;  // the gadget to mend
  };

  // For members, whose constructors call start() last: it shows the settings and registers callbacks.
  struct Member {};
  PMethod(const Display& display, const MethodKind& kind, const MethodContext& context, QWidget* parent,
          Member isMember);
  void start(std::vector<PanelCallback> table);

  // Settings as the panel shows them; what can't be read is refused.
  virtual SamplerSettings read(Refusal& refusal);
  // The sampler of these settings; null with the reason.
  virtual std::unique_ptr<Sampler> make(const SamplerSettings& settings, Refusal& refusal);
  // The sampler whose cost is told while something is being edited.
  virtual std::unique_ptr<Sampler> draft(Refusal& refusal);
  // What else of the panel follows the settings, whether they can be accepted or not.
  virtual void showState(const SamplerSettings& /*settings*/) {}

  // False for a text that is no whole number, blanks around it apart; `number` is then 0.
  static bool isWhole(const QString& text, std::int64_t& number);
  // The user has changed something.
  void edited();
  // The entries of a list anew, for other settings of its design. `value`: what is then chosen; 0: the first.
  void fillList(const ListSetting& list, const SamplerSettings& settings, std::int64_t value);
  void tell(const QString& title, const QString& text);

  const MethodKind& kind() const { return kind_; }
  const FactorList& factors() const { return *context_.factors; }
  const Sampler* current() const { return context_.current; }
  bool isDemo() const { return context_.demo; }
  // Those that the panel was opened with.
  const SamplerSettings& opened() const { return opened_; }

 private:
  void ok();
  void help();
  void showSettings();
  void setReadOnly();
  bool isUnchanged(const Sampler& sampler) const;

  const MethodKind& kind_;
  MethodContext context_;
  SamplerSettings opened_;
  std::unique_ptr<Sampler> sampler_;
  QString unlisted_;  // of a list: what was set and isn't chosen
  bool helpOpen_ = false;
};

}  // namespace tarvex
