#pragma once

#include <cstdint>
#include <memory>

#include "factors/Factor.h"
#include "panels/prep/definitionKinds.h"
#include "toolkit/Panel.h"

class QLineEdit;

namespace tarvex {

class FactorList;

// What is said to a correlated factor that is to become one without a distribution.
inline constexpr const char* kCorrelatedKind = "   Can't change to Constant\n or Relation a correlated factor";

// The list that a definition panel's factor belongs to: for names in use, correlations, and what relations can read.
// Must outlive the panel.
struct DefinitionContext {
  const FactorList* list = nullptr;
  std::int32_t place = -1;  // of the factor in the list; -1 for a new one
  bool demo = false;        // for reading only
};

// Why a panel can't be read.
struct Refusal {
  QString title = {};
  QString text = {};         // empty: there is nothing to refuse
  QWidget* where = nullptr;  // the gadget to mend
  int caret = -1;            // where in its text, if known

  bool isEmpty() const { return text.isEmpty(); }
};

// What all definition panels share: name, note, kind and graph of a factor. While the user types, the panel reads
// itself and tells what is wrong in its message line; ok refuses with the same words. The factor given stays as it is.
class PDefinition : public Panel {
 public:
  enum Result { kCancelled = 0, kAccepted = 1, kOtherKind = 2 };

  // How the panel was closed. After kAccepted the factor is the edited one; after kOtherKind it is what could be read,
  // and another panel has to go on with it as a factor of chosenKind().
  Result result() const { return result_; }
  std::unique_ptr<Factor> takeFactor() { return std::move(factor_); }
  const std::string& chosenKind() const { return chosenKind_; }

 protected:
  PDefinition(const Display& display, const DefinitionKind& kind, const Factor& factor,
              const DefinitionContext& context, QWidget* parent);

  // A factor with the parameters that the panel shows; null with the reason.
  virtual std::unique_ptr<Factor> readParameters(Refusal& refusal) = 0;
  virtual void showParameters(const Factor& factor) = 0;
  // What is shown of a factor that could be read.
  virtual void showDraft(const Factor& draft);
  // The last word before the panel closes with a draft: false keeps it open.
  virtual bool confirm(const Factor& /*draft*/) { return true; }
  virtual void apply();

  // Called by the constructor of the member, last: registers callbacks and shows the factor.
  void start(std::vector<PanelCallback> table);
  // The user has changed something.
  void edited();
  void refuse(const Refusal& refusal);

  const DefinitionKind& kind() const { return kind_; }
  const DefinitionContext& context() const { return context_; }

 private:
  Refusal nameRefusal(const std::string& name) const;
  std::unique_ptr<Factor> read(Refusal& refusal);
  void setReadOnly();
  void showFactor(const Factor& factor);
  void ok();
  void reset();
  void distType();
  void formula();

  const DefinitionKind& kind_;
  DefinitionContext context_;
  std::unique_ptr<Factor> opened_;  // what reset() brings back
  std::unique_ptr<Factor> factor_;  // the last that could be read
  std::string chosenKind_;
  Result result_ = kCancelled;
};

// Text with blanks at both ends taken away, at most as long as a name field gives.
std::string nameIn(const QLineEdit& field);

}  // namespace tarvex
