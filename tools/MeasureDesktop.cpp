// What the desktop takes: the start to the first window and its memory, a panel, a large table, large charts.
//   measure-desktop            in a directory with a Tarvex.cfg; prints a line a figure, with its budget
// The figures are those of this build on this machine; an optimised one is faster.
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTabWidget>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"
#include "panels/main/PAbout.h"
#include "panels/main/PGenerate.h"
#include "panels/main/PLogFile.h"
#include "panels/main/PMainPanel.h"
#include "panels/main/TarvexApplication.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PPlots.h"
#include "panels/plots/PScatter.h"
#include "panels/prep/PCorrelation.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/PPrepMain.h"
#include "panels/prep/editFactor.h"
#include "panels/sampling/makeMethodPanel.h"
#include "panels/vels/ResultDesk.h"
#include "plots/runPlots.h"
#include "sampling/SamplerFactory.h"
#include "toolkit/Application.h"
#include "toolkit/ChartView.h"
#include "toolkit/Display.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

constexpr int kTries = 5;  // the median counts

double now() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double residentMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmRSS:", 0) == 0) return std::strtod(line.c_str() + 6, nullptr) / 1024.0;
  return 0.0;
}

// Of the processor; what remains of the time passed in between belonged to other programs.
double worked() {
  return static_cast<double>(std::clock()) * 1000.0 / CLOCKS_PER_SEC;
}

struct Taken {
  std::vector<double> passed, worked;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void print(const std::string& what, const Taken& taken, double budget) {
  std::printf("%-46s %7.1f ms, %7.1f of the processor; budget %g\n", what.c_str(), median(taken.passed),
              median(taken.worked), budget);
}

// Of `act` and all that it makes to be painted.
Taken taken(const std::function<void()>& act) {
  Taken times;
  for (int i = 0; i < kTries; ++i) {
    const double before = now();
    const double workedBefore = worked();
    act();
    Application::drainEvents();
    times.passed.push_back(now() - before);
    times.worked.push_back(worked() - workedBefore);
  }
  return times;
}

// Ends the program when its first window is painted, and tells when that was.
class FirstPaint : public QObject {
 public:
  explicit FirstPaint(double since) : since_(since) { qApp->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* const widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
      std::printf("%f %f %f\n", now() - since_, worked(), residentMegabytes());
      std::fflush(stdout);
      ::_exit(0);
    }
    return false;
  }

 private:
  double since_;
};

int startOnce(int argc, char** argv) {
  const double since = std::strtod(argv[2], nullptr);
  TarvexApplication application(argc, argv);
  const FirstPaint watch(since);
  return application.run({});
}

bool measureStart(const char* program) {
  Taken times;
  std::vector<double> sizes;
  for (int i = 0; i < kTries; ++i) {
    const std::string command = std::string(program) + " --start " + std::to_string(now());
    std::FILE* const child = ::popen(command.c_str(), "r");
    double time = 0.0;
    double work = 0.0;
    double size = 0.0;
    const bool told = child != nullptr && std::fscanf(child, "%lf %lf %lf", &time, &work, &size) == 3;
    if (child == nullptr || ::pclose(child) != 0 || !told) return false;
    times.passed.push_back(time);
    times.worked.push_back(work);
    sizes.push_back(size);
  }
  print("start to the first window", times, 250.0);
  std::printf("%-46s %7.1f MB; budget 80\n", "memory of the first window", median(sizes));
  return true;
}

class LargeSource : public TableSource {
 public:
  int rows() const override { return 1'000'000; }
  int columns() const override { return 20; }
  QString header(int column) const override { return QString("column %1").arg(column + 1); }
  QString text(int row, int column) const override { return QString::number(number(row, column)); }
  double number(int row, int column) const override { return row * 0.37 + column; }
};

void measureTable() {
  TableView view;
  view.resize(900, 600);
  print("a table of 1,000,000 x 20 opens", taken([&] {
          view.hide();
          view.setSource(std::make_shared<LargeSource>());
          view.show();
        }),
        50.0);
  int at = 0;
  print("it goes to another page", taken([&] {
          view.verticalScrollBar()->setValue(at += 100'000);
          view.viewport()->repaint();
        }),
        16.0);
}

RunTable sample(std::int32_t runs, int columns) {
  RunTable table;
  table.runs = runs;
  for (int column = 0; column < columns; ++column) {
    table.columns.push_back({"x" + std::to_string(column + 1), true, {}});
    for (std::int32_t run = 0; run < runs; ++run)
      table.columns.back().values.push_back(std::fmod((run + 1) * std::sqrt(2.0 + column), 1.0));
  }
  return table;
}

void measureCharts() {
  ChartView view;
  view.resize(900, 600);
  view.QWidget::show();
  const RunTable points = sample(1'000'000, 2);
  const Figure scatter = scatterPlot(points.columns[0], points.columns[1]);
  print("a scattergram of 1,000,000", taken([&] {
          view.show(scatter);
          static_cast<void>(view.grab());
        }),
        100.0);
  view.show(cobwebPlot(sample(10'000, 10), {}));
  static_cast<void>(view.grab());
  double lower = 0.0;
  print("a range over 10,000 runs and 10 axes moves", taken([&] {
          view.setBrush({{2, lower += 0.05, lower + 0.4}});
          static_cast<void>(view.grab());
        }),
        100.0);
}

// The panels over one selection: brushed in one, seen in all.
void measurePlots(const Display& display) {
  PMainPanel main(display, "PMainPanel", "Tarvex", ".");
  ResultDesk desk(display, main.controller(), nullptr);
  const auto selectionOf = [](std::int32_t runs, int columns) {
    return std::make_shared<Selection>(std::make_shared<const RunTable>(sample(runs, columns)), 0);
  };
  const std::shared_ptr<Selection> large = selectionOf(1'000'000, 20);
  std::unique_ptr<PPlots> plots;
  print("plots of 1,000,000 x 20 open", taken([&] {
          plots = std::make_unique<PPlots>(desk, large);
          if (plots->show()) plots->window()->repaint();
        }),
        50.0);
  print("their table opens", taken([&] {
          auto* const pages = plots->gadget<QTabWidget>("NoPlots");
          pages->setCurrentIndex(0);
          pages->setCurrentIndex(1);
          plots->window()->repaint();
        }),
        50.0);
  const std::shared_ptr<Selection> small = selectionOf(10'000, 10);
  PCobwebs cobwebs(desk, small, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  PScatter scatter(desk, small, 0, 1);
  if (!cobwebs.show() || !scatter.show()) return;
  static_cast<void>(cobwebs.window()->grab());
  static_cast<void>(scatter.window()->grab());
  double lower = 0.0;
  std::string message;
  print("a brush over 10,000 runs, 10 axes, and a scattergram", taken([&] {
          lower += 0.05;
          if (!small->setFilter(2, lower, lower + 0.4, message)) return;
          static_cast<void>(cobwebs.window()->grab());
          static_cast<void>(scatter.window()->grab());
        }),
        100.0);
}

template <class MadePanel>
void measurePanel(const char* name, const std::function<std::unique_ptr<MadePanel>()>& make) {
  print(std::string("panel ") + name, taken([&] {
          const std::unique_ptr<MadePanel> panel = make();
          if (panel->show()) panel->window()->repaint();
        }),
        50.0);
}

std::shared_ptr<FactorList> manyFactors(int count) {
  auto list = std::make_shared<FactorList>();
  for (int i = 1; i <= count; ++i) {
    std::unique_ptr<Factor> factor = makeFactor("Normal");
    factor->name = "x" + std::to_string(i);
    list->addFactor(std::move(factor));
  }
  return list;
}

void measureCorrelations(const Display& display, const FactorList& list) {
  constexpr double kBudget = 100.0;
  std::unique_ptr<PCorrelation> panel;
  print("their correlations open", taken([&] {
          panel = std::make_unique<PCorrelation>(display, list, false, nullptr);
          if (panel->show()) panel->window()->repaint();
        }),
        kBudget);
  QAbstractItemModel& cells = *panel->gadget<TableView>("MaCorrelations")->model();
  int round = 0;
  print("one of them changes", taken([&] { cells.setData(cells.index(7, 8), 0.01 * ++round); }), kBudget);
  print("they are accepted", taken([&] {
          FactorList copy;
          std::string message;
          if (copy.copyFrom(list, message)) static_cast<void>(panel->draft().applyTo(copy, message));
        }),
        kBudget);
}

// A rank correlation matrix that is edited on its page: judged anew, and once so that it can't be had.
void measureMatrix(const Display& display) {
  constexpr double kBudget = 100.0;
  constexpr int kOrder = 200;
  const std::shared_ptr<FactorList> list = manyFactors(kOrder);
  list->correlationMode = kImanConover;
  for (int row = 0; row < kOrder; ++row)
    for (int column = 0; column < row; ++column)
      static_cast<void>(list->setMatrix(row, column, 0.3F));  // both are in the list
  PCorrelation panel(display, *list, false, nullptr);
  if (!panel.show()) return;
  QAbstractItemModel& cells = *panel.gadget<TableView>("MaCorrelations")->model();
  int round = 0;
  const auto change = [&](double value) {
    cells.setData(cells.index(5, 9), value);
    panel.window()->repaint();
  };
  print("a matrix of 200 x 200: a cell changes", taken([&] { change(0.3 + 0.01 * ++round); }), kBudget);
  print("it is valid no longer", taken([&] { change(-0.8 - 0.01 * ++round); }), kBudget);
}

void measureFactors(const Display& display, int count) {
  constexpr double kBudget = 100.0;
  const std::shared_ptr<FactorList> list = manyFactors(count);
  std::unique_ptr<PInputFactors> panel;
  print("a list of " + std::to_string(count) + " factors opens", taken([&] {
          panel = std::make_unique<PInputFactors>(display, list, false, nullptr);
          if (panel->show()) panel->window()->repaint();
        }),
        kBudget);
  int round = 0;
  print("it is searched", taken([&] {
          panel->gadget<QLineEdit>("TSearch")->setText(QString::number(++round));
          panel->call("search");
        }),
        kBudget);
  panel->gadget<QLineEdit>("TSearch")->clear();
  panel->call("search");
  QAbstractItemModel& rows = *panel->gadget<TableView>("MaFactors")->model();
  print("a parameter changes", taken([&] { rows.setData(rows.index(7, 2), QString("%1 1").arg(++round)); }), kBudget);
  PMainPanel main(display, "PMainPanel", "Tarvex", ".");
  print("it is accepted, by the project too", taken([&] {
          PrepSettings settings;
          std::string message;
          panel->call("ok");
          settings.sampler = makeSampler(kRandom);
          if (settings.factors.copyFrom(*panel->factors(), message))
            main.acceptPrep(std::move(settings), "factors " + QString::number(++round));
        }),
        kBudget);
  measureCorrelations(display, *list);
  print("the panel of the preparation opens", taken([&] {
          PrepSettings settings;
          std::string message;
          if (!settings.factors.copyFrom(*list, message)) return;
          PPrepMain prep(display, std::move(settings), {}, false, nullptr);
          if (prep.show()) prep.window()->repaint();
        }),
        kBudget);
  for (const std::int32_t method : {kRandom, kFixed, kMorris, kFast})
    print(
        "panel of method " + std::to_string(method), taken([&] {
          const std::unique_ptr<PMethod> made = makeMethodPanel(display, method, {list.get(), nullptr, false}, nullptr);
          if (made && made->show()) made->window()->repaint();
        }),
        kBudget);
  const std::string path = "factors.fac";
  std::string message;
  FactorList read;
  print("its file is written", taken([&] { static_cast<void>(saveFactorFile(path, *list, message)); }), kBudget);
  print("its file is read", taken([&] { static_cast<void>(loadFactorFile(path, read, message)); }), kBudget);
  std::printf("its file has %.1f MB; resident memory %.1f MB\n",
              static_cast<double>(std::filesystem::file_size(path)) / 1e6, residentMegabytes());
}

void measurePoints(const Display& display) {
  constexpr double kBudget = 100.0;
  constexpr int kPoints = 10'000;
  std::vector<QStringList> block;
  for (int i = 0; i < kPoints; ++i) block.push_back({QString::number(i), "0.0001"});
  const std::unique_ptr<Factor> factor = makeFactor("Discrete");
  std::unique_ptr<PDefinition> panel;
  const auto paste = [&] {
    auto* const view = panel->gadget<TableView>("MaValues");
    static_cast<void>(view->tableModel().editable()->setBlock(0, 0, block));  // all of it is numbers
    view->tableModel().sourceChanged();
    panel->call("edited");
  };
  panel = makeDefinition(display, *factor, {}, nullptr);
  if (panel->show()) print("10,000 points are pasted", taken(paste), kBudget);
  panel->call("ok");
  const std::unique_ptr<Factor> large = panel->takeFactor();
  print("their panel opens", taken([&] {
          panel = makeDefinition(display, *large, {}, nullptr);
          if (panel->show()) panel->window()->repaint();
        }),
        kBudget);
  QAbstractItemModel& rows = *panel->gadget<TableView>("MaValues")->model();
  int round = 0;
  print("one of them changes", taken([&] { rows.setData(rows.index(5000, 0), 5000.0 + 0.1 * ++round); }), kBudget);
  print("they are accepted", taken([&] { panel->call("ok"); }), kBudget);
  const auto list = std::make_shared<FactorList>();
  list->addFactor(large->clone());
  PInputFactors factors(display, list, false, nullptr);
  print("a list with them is shown", taken([&] {
          if (factors.show()) factors.window()->repaint();
        }),
        kBudget);
  print("a factor beside them is added", taken([&] {
          QAbstractItemModel& grid = *factors.gadget<TableView>("MaFactors")->model();
          grid.setData(grid.index(factors.factors()->factorCount(), 0), QString("y%1").arg(++round));
        }),
        kBudget);
}

int measure(int argc, char** argv) {
  if (!measureStart(argv[0])) {
    std::fprintf(stderr, "the program doesn't start here\n");
    return 1;
  }
  Application application(argc, argv, "Tarvex", "");
  application.display().appendToSearchPath("Tarvex/TarvexPanels");
  const Display& display = application.display();
  measurePanel<PAbout>("PAbout", [&] { return std::make_unique<PAbout>(display, nullptr); });
  measurePanel<PLogFile>("PLogFile", [&] { return std::make_unique<PLogFile>(display, nullptr); });
  measurePanel<PGenerate>(
      "PGenerate", [&] { return std::make_unique<PGenerate>(display, "generation", "Generation", 1000, nullptr); });
  measureTable();
  measureCharts();
  measurePlots(display);
  measureMatrix(display);
  for (const int count : {1000, 5000}) measureFactors(display, count);
  measurePoints(display);
  return 0;
}

}  // namespace
}  // namespace tarvex

int main(int argc, char** argv) {
  const bool start = argc == 3 && std::string(argv[1]) == "--start";
  return start ? tarvex::startOnce(argc, argv) : tarvex::measure(argc, argv);
}
