#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "panels/plots/RunPanel.h"
#include "panels/plots/RunsTable.h"

namespace tarvex {

struct CorrelationMatrix;
class TableView;

// The plots of a sample and its results: which columns to show and how, the runs as a table, their correlations.
class PPlots : public RunPanel {
 public:
  PPlots(ResultDesk& desk, std::shared_ptr<Selection> selection);
  ~PPlots() override;

 protected:
  void showSelection() override;

 private:
  enum Page { kVariables, kRuns, kCorrelations };
  // Of what the correlations are.
  enum Kind { kOfSample, kOfValues, kOfRanks };

  void addPages();
  void listColumns();
  void move(const char* from, const char* to);
  void refreshLists();
  std::vector<std::size_t> chosen();
  Page page();
  void showPage();

  void scatter();
  void cobwebs();
  void histogram();
  void map();

  TableView& runsView();
  void turnColumns(bool onwards);
  void refreshColumns();
  void changeNotation();
  void fillRuns();

  bool correlate();
  bool correlateNow(CorrelationMatrix& matrix, const Progress& progress, std::string& message);
  void showCorrelations();
  void checkValue();
  void openPair();

  std::size_t listed_ = 0;  // columns that the lists name
  NumberNotation notation_ = NumberNotation::General;
  std::shared_ptr<const CorrelationMatrix> matrix_;  // null: to be computed
  std::shared_ptr<const RunTable> shownRuns_;        // in the table of runs
};

}  // namespace tarvex
