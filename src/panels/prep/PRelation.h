#pragma once

#include <string>
#include <vector>

#include "factors/ExpressionCheck.h"
#include "panels/prep/PDefinition.h"

class QPlainTextEdit;

namespace tarvex {

// The definition panel of a relation: an expression of the other factors of the list, typed or put together from their
// names, and the values that it takes over a small sample of them.
class PRelation : public PDefinition {
 public:
  PRelation(const Display& display, const Factor& factor, const DefinitionContext& context, QWidget* parent);

 protected:
  std::unique_ptr<Factor> readParameters(Refusal& refusal) override;
  void showParameters(const Factor& factor) override;
  void showDraft(const Factor& draft) override;
  bool confirm(const Factor& draft) override;
  void apply() override;

 private:
  QPlainTextEdit* field();
  std::string expression();
  ExpressionCheck check();
  int caretOf(const ExpressionCheck& found);
  Refusal refusalOf(const ExpressionCheck& found, const char* text);
  void insert(const QString& text, int caretBack = 0);
  void insertLabel();
  void addFactor();
  void selFunction();
  void moved();
  void showValues();

  std::vector<std::string> names_;  // of the other factors
  std::string former_;              // the expression that the panel opened with
  std::string shown_;               // the expression that was judged last
};

}  // namespace tarvex
