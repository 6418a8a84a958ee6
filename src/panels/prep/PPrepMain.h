#pragma once

#include <memory>

#include "factors/DefaultTruncations.h"
#include "sampling/PrepSettings.h"
#include "toolkit/Panel.h"

namespace tarvex {

class PQuickHelp;

// Brings factors, a method and a sample file together. It works on the settings given and shows which methods the
// factors and their correlation allow.
class PPrepMain : public Panel {
 public:
  // `fromFile` says where the factors come from when that is no panel: the path of their file; may be empty.
  PPrepMain(const Display& display, PrepSettings settings, const QString& fromFile, bool demo, QWidget* parent);
  ~PPrepMain() override;

  // What was accepted.
  PrepSettings takeSettings();
  // Where the factors now come from, as it is given to the constructor.
  const QString& fromFile() const { return fromFile_; }

 protected:
  bool closing() override;

 private:
  void create();
  void modify();
  void inputSelection();
  void outputSelection();
  void select();
  void specify();
  void setting();
  void visualize();
  void ok();
  void cancel();

  void editFactors(std::shared_ptr<const FactorList> list);
  void takeFactors(FactorList factors, const QString& fromFile);
  std::shared_ptr<const FactorList> shared() const;
  std::int32_t selectedMethod();
  void fillMethods();
  void refresh();
  void fail(const QString& title, const QString& text);

  PrepSettings settings_;
  QString fromFile_;
  bool demo_;
  bool busy_ = false;
  bool methodChosen_ = false;
  bool outputChosen_ = false;
  std::unique_ptr<PQuickHelp> quickHelp_;
  DefaultTruncations defaults_;  // at the start
};

}  // namespace tarvex
