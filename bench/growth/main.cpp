// What a run costs as runs and factors grow: `tarvex-batch sample`, file and statistics included, as a whole process.
//   tarvex-growth [PICTURE]    prints a table; draws the times into PICTURE (.svg, .png, ...)

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "Cases.h"
#include "base/TextWriter.h"
#include "plots/Figure.h"
#include "plots/savePicture.h"

namespace tarvex::bench {
namespace {

constexpr std::int64_t kMostCells = 100000000;  // a file of a gigabyte
constexpr std::int64_t kLeastRuns = 10000;
constexpr int kTurns = 3;
constexpr double kLongEnough = 5.0;  // seconds from which one turn will do

struct Method {
  const char* name;
  const char* word;
  LineStyle style;
};
constexpr Method kMethods[] = {{"Random", "random", LineStyle::Solid}, {"Latin hypercube", "latin", LineStyle::Dash}};

struct Cost {
  double seconds = 1e300;  // of the processor
  double megabytes = 0.0;  // at most, in memory
};

Cost costOf(const std::filesystem::path& directory, const Method& method, std::int64_t runs) {
  const std::string batch = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "tarvex-batch";
  std::vector<std::string> words = {batch,       "sample", "factors.fac",        "-o",        "growth.sam", "-m",
                                    method.word, "-n",     std::to_string(runs), "--threads", "1"};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  Cost least;
  for (int turn = 0; turn < kTurns; ++turn) {
    const pid_t child = ::fork();
    require(child >= 0, "no process can be made");
    if (child == 0) {
      const int quiet = ::open("/dev/null", O_WRONLY);
      ::dup2(quiet, STDOUT_FILENO);
      if (::chdir(directory.c_str()) == 0) ::execv(batch.c_str(), arguments.data());
      ::_exit(127);
    }
    int status = 0;
    rusage used{};
    require(::wait4(child, &status, 0, &used) == child && status == 0, "tarvex-batch failed");
    const auto seconds = [](const timeval& time) {
      return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    least.seconds = std::min(least.seconds, seconds(used.ru_utime) + seconds(used.ru_stime));
    least.megabytes = std::max(least.megabytes, static_cast<double>(used.ru_maxrss) / 1024.0);
    if (least.seconds > kLongEnough) break;
  }
  return least;
}

void draw(const std::string& path, std::vector<Line> lines, const std::vector<std::string>& names) {
  XyChart chart;
  chart.x = {"runs", std::log(0.8 * kLeastRuns), std::log(1.25e7), AxisScale::Logarithms};
  double highest = 0.0;
  for (const Line& line : lines)
    for (const double y : line.y) highest = std::max(highest, y);
  chart.y = {"processor's time of a cell, microseconds", 0.0, 1.1 * highest};
  Figure figure;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    figure.legend.push_back({names[i], lines[i].colour, LegendMark::Line, lines[i].style});
    chart.layers.emplace_back(std::move(lines[i]));
  }
  figure.charts.emplace_back(std::move(chart));
  std::string problem;
  const auto format = pictureFormatOf(path);
  require(format && savePicture(path, figure, *format, problem), "the picture can't be written: " + problem);
}

}  // namespace
}  // namespace tarvex::bench

int main(int argc, char** argv) {
  using namespace tarvex;
  using namespace tarvex::bench;
  const std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("tarvex-growth-" + std::to_string(::getpid()));
  require(std::filesystem::create_directories(directory), "no directory for files");
  constexpr Colour kColours[] = {colourOfBytes(0, 114, 178), colourOfBytes(213, 94, 0), colourOfBytes(0, 158, 115)};
  std::vector<Line> lines;
  std::vector<std::string> names;
  std::printf("%-16s %8s %10s %10s %14s %14s %8s\n", "sample", "factors", "runs", "s", "us a run", "us a cell", "MB");
  std::size_t colour = 0;
  for (const std::int32_t factors : {10, 100, 370}) {
    TextWriter out(directory / "factors.fac");
    mixedFactors(factors).write(out);
    require(out.commit(), out.problem());
    for (const Method& method : kMethods) {
      Line line;
      line.colour = kColours[colour];
      line.style = method.style;
      for (std::int64_t runs = kLeastRuns; runs * factors <= kMostCells; runs *= 10) {
        const Cost cost = costOf(directory, method, runs);
        const double each = cost.seconds * 1e6 / static_cast<double>(runs);
        std::printf("%-16s %8d %10lld %10.2f %14.3f %14.4f %8.0f\n", method.name, factors, static_cast<long long>(runs),
                    cost.seconds, each, each / factors, cost.megabytes);
        static_cast<void>(std::fflush(stdout));
        line.x.push_back(std::log(static_cast<double>(runs)));
        line.y.push_back(each / factors);
      }
      lines.push_back(std::move(line));
      names.push_back(std::string(method.name) + ", " + std::to_string(factors) + " factors");
    }
    ++colour;
  }
  std::filesystem::remove_all(directory);
  if (argc > 1) draw(argv[1], std::move(lines), names);
  return 0;
}
