#pragma once

#include <memory>
#include <string>
#include <vector>

#include "factors/FactorList.h"
#include "toolkit/Panel.h"

namespace tarvex {

class FactorEditing;
class FactorTable;

// The list of factors under edit: a grid that can be typed and pasted into, the density of the selected factor beside
// it, and panels for single factors, correlations and truncations. The list given stays as it is.
class PInputFactors : public Panel {
 public:
  PInputFactors(const Display& display, std::shared_ptr<const FactorList> factors, bool demo, QWidget* parent);
  ~PInputFactors() override;

  // The list as it is now. Of use once the panel was accepted.
  std::shared_ptr<const FactorList> factors() const;
  FactorEditing& editing() { return *editing_; }

 protected:
  bool closing() override;

 private:
  void add();
  void deletion();
  void modify();
  void visualize();
  void correlate();
  void truncation();
  void newFactors();
  void open();
  void save();
  void impStein();
  void ok();
  void cancel();
  void escape();
  void search();
  void moveBy(int by);
  void selectItem();
  void undo();
  void redo();

  const FactorList& list() const;
  std::vector<int> selectedPlaces();
  int selectedPlace();
  // Selects the factors of these places, which ascend; leaves the selection where none of them is shown.
  void select(const std::vector<int>& places);
  void selectLater(const std::vector<int>& places);
  // The places of the selected factors; empty, after the message, when there is none.
  std::vector<int> wantSelection(const char* title);
  bool giveUpStein();
  bool saveList();
  bool leave();
  // What is done in the grid; each answers why not, or nothing.
  QString edit(int row, int column, const QString& text);
  QString paste(int row, int column, const std::vector<QStringList>& block);
  QString moveRow(int from, int to);
  QString moveTo(const std::vector<int>& places, int before);
  static QString refusal(bool taken, const QString& problem);
  // Shows a refusal; true when there is none.
  bool done(bool success, const QString& title, const QString& problem);

  void refresh();
  void refreshTable();
  void refreshFactor();
  void refreshGadgets();
  void say(const QString& text);

  bool demo_;
  std::unique_ptr<FactorEditing> editing_;
  std::shared_ptr<FactorTable> table_;
  std::string newKind_ = "Normal";  // of the factor that is added next
  int selectedRow_ = -1;
  std::shared_ptr<const FactorList> shownList_;  // of the factor that is drawn, and its place
  int shownRow_ = -1;
  bool inCell_ = false;  // a cell's editor hands over what was typed
};

}  // namespace tarvex
