// What the desktop takes: the start to the first window and its memory, a panel, a large table, large charts.
//   measure-desktop            in a directory with a Tarvex.cfg; prints a line a figure, with its budget
// The figures are those of this build on this machine; an optimised one is faster.
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "panels/main/PAbout.h"
#include "panels/main/PGenerate.h"
#include "panels/main/PLogFile.h"
#include "panels/main/TarvexApplication.h"
#include "plots/runPlots.h"
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

template <class MadePanel>
void measurePanel(const char* name, const std::function<std::unique_ptr<MadePanel>()>& make) {
  print(std::string("panel ") + name, taken([&] {
          const std::unique_ptr<MadePanel> panel = make();
          if (panel->show()) panel->window()->repaint();
        }),
        50.0);
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
  return 0;
}

}  // namespace
}  // namespace tarvex

int main(int argc, char** argv) {
  const bool start = argc == 3 && std::string(argv[1]) == "--start";
  return start ? tarvex::startOnce(argc, argv) : tarvex::measure(argc, argv);
}
