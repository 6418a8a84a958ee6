#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/Changes.h"
#include "app/PostProcessor.h"
#include "toolkit/Panel.h"

class QPlainTextEdit;

namespace tarvex {

class ExpressionColours;
class NameCompletion;
class OutputList;
class ResultDesk;
class RunController;

// The post-processor's main panel: which variables are analysed, outputs or expressions of them, and what is to be seen
// of them. It stays open while other panels work on the project, and shows the project as it is.
class PVelsMain : public Panel {
 public:
  // `openResults` opens a post-processor file of the user's choice in the place of the project.
  PVelsMain(ResultDesk& desk, std::function<void()> openResults);
  ~PVelsMain() override;

 protected:
  bool closing() override;

 private:
  RunController& controller();
  QPlainTextEdit* field();
  void fillFields();
  void knowOutputs();
  void say(const QString& text);
  void refuse(const QString& text);

  void refresh();
  void refreshLists();
  void refreshGadgets();
  QString whyNotAnalyse();
  std::vector<int> selectedRows(const char* table);

  void add();
  void addAll();
  bool addOutput(const std::string& output, std::vector<std::string>& texts);
  void append(const std::vector<std::string>& texts);
  bool select(const std::vector<std::string>& texts);
  QString setWeight(int output, float weight);
  void remove();
  void removeAll();

  void enterExpression(const QString& text, int caretBack = 0);
  void insertLabel();
  void selFunction();
  void edited();
  void addExpr();
  void leaveExpression();
  std::string expression();

  void ua();
  void sa();
  void plots();
  void report();
  void save();
  void open();
  void dismiss();

  ResultDesk& desk_;
  std::function<void()> openResults_;
  std::shared_ptr<const AnalysisSnapshot> shown_;
  std::shared_ptr<OutputList> outputs_;
  std::vector<std::string> outputNames_;  // as variables ask for them
  std::vector<std::string> variables_;    // that the list shows
  QPointer<ExpressionColours> colours_;   // of the expression; its document and its field own them
  QPointer<NameCompletion> completion_;
  bool expressionMode_ = false;
  QString judged_;  // the expression that the message line speaks of
  bool working_ = false;
  ChangeNotifier::Subscription subscription_;
};

}  // namespace tarvex
