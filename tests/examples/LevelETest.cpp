#include <sys/wait.h>

#include <cstdlib>
#include <numbers>
#include <random>
#include <sstream>

#include "levele/LevelEModel.h"
#include "levele/SampleTable.h"
#include "support/Damage.h"
#include "support/Test.h"

namespace levele {
namespace {

using tarvex::test::agrees;
using tarvex::test::readLines;
using tarvex::test::writeFile;

using Layers = std::array<Layer, 2>;

struct Case {
  const char* name;
  Inputs inputs;
  std::vector<double> times;
};

// clang-format off
//                                 T    kI    kC    v1    v2   l1   l2 RI1 RI2 RC1 RC2    W
const Case kCases[] = {
    {"middle",                  {550, 3e-3, 3e-6, 1e-2, 3e-2, 300, 125,  3,  3, 16, 16, 1e6}, {5e4, 1e5, 2e5, 8e5}},
    {"fastest",                 {100, 1e-2, 1e-5, 1e-1, 1e-1, 100,  50,  1,  1,  3,  3, 1e5}, {800, 1500, 3e3, 2e4}},
    {"fast, slow leaching",     {999, 1e-3, 1e-6, 1e-1, 1e-1, 100,  50,  1,  1,  3,  3, 1e5}, {1800, 3e3, 6e3, 2e4}},
    {"slowest",                 {999, 1e-3, 1e-6, 1e-3, 1e-2, 500, 200,  5,  5, 30, 30, 1e7}, {8e5, 2e6, 5e6, 9e6}},
    {"slow first, fast second", {100, 1e-2, 1e-6, 1e-3, 1e-1, 100,  50,  5,  1,  3,  3, 1e6}, {2e5, 5e5, 9e5, 3e6}},
    {"fast first, slow second", {500, 1e-3, 1e-5, 1e-1, 1e-2, 500, 200,  1,  5,  3, 30, 1e6}, {4e4, 1e5, 2e5, 9e5}},
};
// clang-format on

// First passage through one layer: the answer to a unit pulse (A. Ogata, R. B. Banks, USGS Prof. Paper 411-A, 1961).
double passage(const Layer& layer, double t) {
  const double v = layer.velocity / layer.retention;
  const double d = 4.0 * layer.dispersion * v * t;
  return layer.length / (t * std::sqrt(std::numbers::pi * d)) * std::exp(-std::pow(layer.length - v * t, 2) / d);
}

// Share that has come out per year at `span` years after the leaching began, without decay: exponential leaching and
// both passages convolved on a grid.
double outflowPerAtom(double leach, const Layers& layers, double span) {
  constexpr int kGrid = 400000;
  const double dt = span / kGrid;
  const double kept = std::exp(-leach * dt);
  const double newer = 1.0 + std::expm1(-leach * dt) / (leach * dt);  // weights of the ends of a straight piece
  const double older = 1.0 - kept - newer;
  double released = 0.0;  // from layer 1
  double before = 0.0;
  double sum = 0.0;
  for (int i = 1; i < kGrid; ++i) {
    const double now = passage(layers[0], i * dt);
    released = released * kept + now * newer + before * older;
    before = now;
    sum += released * passage(layers[1], span - i * dt);
  }
  return sum * dt;
}

// The grid of the convolution is what limits the agreement: where next to nothing comes it doesn't resolve what came.
TEST(LevelEModel, iodineIsTheAnalyticSolution) {
  for (const Case& c : kCases) {
    const Inputs& x = c.inputs;
    const Layers layers = {{{x[3], x[5], x[7], 10.0}, {x[4], x[6], x[8], 5.0}}};
    for (const double time : c.times) {
      const double expected =
          56.0 * 0.73 / x[11] * 100.0 * std::exp(-4.41e-8 * time) * outflowPerAtom(x[1], layers, time - x[0]);
      EXPECT_TRUE(agrees(LevelEModel(x).dose(time).iodine, expected, 2e-4, 1e-30)) << c.name << " at " << time;
    }
  }
}

// Reference: finite volumes in space (central differences, cells of 1/10 and 1/20 of the dispersion length), two-stage
// implicit Runge-Kutta steps of 1/250 and 1/500 of the time, extrapolated; the last digits written are in doubt.
TEST(LevelEModel, chainIsTheFiniteVolumeSolution) {
  const struct {
    const Case& set;
    double time, dose;
  } references[] = {
      {kCases[0], 3e6, 7.911196e-14}, {kCases[0], 9e6, 3.284426e-13}, {kCases[1], 2e4, 3.431180e-07},
      {kCases[1], 9e4, 6.346423e-05}, {kCases[1], 3e5, 7.513180e-05}, {kCases[1], 1e6, 6.371440e-06},
      {kCases[4], 1e6, 1.864081e-10}, {kCases[4], 3e6, 1.590579e-09}, {kCases[4], 9e6, 3.556889e-09},
  };
  for (const auto& r : references)
    EXPECT_TRUE(agrees(LevelEModel(r.set.inputs).dose(r.time).chain, r.dose, 2e-5)) << r.set.name << " at " << r.time;
}

// With the same retention for all three, an atom moves the same way whatever it is: decay and transport separate.
TEST(ChainTransport, equalRetentionSeparatesDecay) {
  const double a = 3e-6, b = 2e-5, c = 9e-5;
  const std::vector<Nuclide> chain = {{1000, a, 1, 20}, {0, b, 1, 20}, {0, c, 1, 20}};
  const Layers layers = {{{0.1, 100, 3, 10}, {0.05, 50, 2, 5}}};
  Layers slowed = layers;
  for (Layer& layer : slowed) layer.retention *= 20;
  for (const double t : {3e4, 6e4, 1e5, 3e5, 1e6}) {
    const double moved = 1000.0 * outflowPerAtom(1e-5, slowed, t - 900);
    const double ea = std::exp(-a * t), eb = std::exp(-b * t), ec = std::exp(-c * t);
    const double amounts[] = {ea, a / (b - a) * (ea - eb),
                              a * b * (ea / ((b - a) * (c - a)) + eb / ((a - b) * (c - b)) + ec / ((a - c) * (b - c)))};
    for (std::size_t i = 0; i < 3; ++i) {
      std::vector<double> only(3, 0.0);
      only[i] = 1.0;
      EXPECT_TRUE(agrees(ChainTransport(chain, 1e-5, 900, layers).outflow(t, only), moved * amounts[i], 1e-5))
          << t << ' ' << i;
    }
  }
}

TEST(LevelEModel, halvedStepsChangeNothing) {
  // Ends and middles of the twelve ranges, put together at random.
  const Inputs low = {100, 1e-3, 1e-6, 1e-3, 1e-2, 100, 50, 1, 1, 3, 3, 1e5};
  const Inputs high = {1000, 1e-2, 1e-5, 1e-1, 1e-1, 500, 200, 5, 5, 30, 30, 1e7};
  std::mt19937 random(1);
  for (int run = 0; run < 150; ++run) {
    Inputs x;
    for (std::size_t i = 0; i < kFactors; ++i)
      x[i] = low[i] * std::pow(high[i] / low[i], static_cast<double>(random() % 3) / 2.0);
    const LevelEModel model(x);
    for (const double time : LevelEModel::times()) {
      EXPECT_TRUE(agrees(model.dose(time).iodine, model.dose(time, 1).iodine, 1e-8)) << run << " at " << time;
      EXPECT_TRUE(agrees(model.dose(time).chain, model.dose(time, 1).chain, 1e-8)) << run << " at " << time;
    }
  }
}

using Words = std::vector<std::string>;

const Words kRun0 = {"550", "0.003", "3e-06", "0.01", "0.03", "300", "125", "3", "3", "16", "16", "1000000"};
const Words kRun1 = {"100", "0.01", "1e-05", "0.1", "0.1", "100", "50", "1", "1", "3", "3", "100000"};

std::string line(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += word + '\t';
  return text + '\n';
}

const std::string kTwoRuns = "0\n2\n12\n0\n" + line(kRun0) + line(kRun1);

// The program as its user has it: files in, files and a status out.
class LevelEProgram : public tarvex::test::InDirectory {
 protected:
  void SetUp() override { std::filesystem::current_path(directory_.path()); }

  // Exit status; what the program said is in said_.
  int run(const std::string& arguments) {
    const int status = std::system(("'" LEVELE_PROGRAM "' " + arguments + " > said 2>&1").c_str());
    said_ = tarvex::test::readFile("said");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void refuses(const std::string& arguments, const std::string& text) {
    EXPECT_EQ(run(arguments), 1) << arguments;
    EXPECT_EQ(said_, text + '\n') << arguments;
  }

  std::string said_;
};

TEST_F(LevelEProgram, writesEveryRunAndTime) {
  writeFile("two runs.sam", kTwoRuns);
  ASSERT_EQ(run("'two runs.sam'"), 0) << said_;
  EXPECT_EQ(said_, "");
  const auto lines = readLines("levele.out");
  ASSERT_EQ(lines.size(), 6 + 2 * (2 + 26));
  EXPECT_EQ(Words(lines.begin(), lines.begin() + 8),
            Words({"3", "doseI", "doseChain", "dose", "time = yes", "2", "RUN 0", "26"}));
  EXPECT_EQ(lines[34], "RUN 1");
  const Dose dose = LevelEModel({550, 0.003, 3e-06, 0.01, 0.03, 300, 125, 3, 3, 16, 16, 1000000}).dose(1e5);
  std::istringstream row(lines[16]);
  for (const double expected : {1e5, dose.iodine, dose.chain, dose.iodine + dose.chain}) {
    double number = 0.0;
    row >> number;
    EXPECT_TRUE(agrees(number, expected, 1e-5));
  }
}

// The same runs, once listed by factor, once with columns in another order and among others: only their names tell.
TEST_F(LevelEProgram, tablesByFactorAndByName) {
  std::string byFactor = "0\n2\n12\n1\n";
  std::string records = "Default Truncations:\n0.001\t0.999\n\n13 Distributions:\nConstant\nextra\n\n1\t9\n\n";
  Words row0 = {"9"};
  Words row1 = {"9"};
  for (std::size_t i = 0; i < kFactors; ++i) {
    byFactor += line({kRun0[i], kRun1[i]});
    const std::size_t k = kFactors - 1 - i;
    row0.push_back(kRun0[k]);
    row1.push_back(kRun1[k]);
    records += "Uniform\n" + std::string(kFactorNames[k]) + "\na note\n1\t2\n0\t1\t0.5\n1\t2\t0.5\n\n";
  }
  writeFile("plain.sam", kTwoRuns);
  writeFile("factor.sam", byFactor);
  writeFile("named.sam", "0\n2\n13\n0\n" + line(row0) + line(row1) + "0\n" + records);
  for (const char* name : {"plain", "factor", "named"}) {
    const std::string output = std::string(name) + ".out";
    ASSERT_EQ(run(std::string(name).append(".sam ").append(output)), 0) << said_;
    EXPECT_EQ(readLines(output), readLines("plain.out")) << name;
  }
}

TEST_F(LevelEProgram, saysWhatIsWrong) {
  const std::string use = "Use: levele SAMPLE.sam [OUTPUT]";
  refuses("", use);
  refuses("good.sam a b", use);
  refuses("none.sam", "Can't read the sample file none.sam");
  refuses(".", "Can't read the sample file .");
  const struct {
    std::string text, says;
  } damages[] = {
      {"", "its first four lines must be whole numbers"},
      {"0\n2\n12\n0\n" + line(kRun0) + "100\t0.01\n", "number 15 of 24 is missing or no number"},
      {"0\n1\n2\n0\n1\tx\t\n", "number 2 of 2 is missing or no number"},
      {"0\n2000000000\n2000000000\n0\n1\t2\n", "2000000000 runs of 2000000000 columns don't fit the file"},
      {"0\n-1\n12\n0\n1\t2\n", "-1 runs of 12 columns don't fit the file"},
  };
  for (const auto& damage : damages) {
    writeFile("a.sam", damage.text);
    refuses("a.sam", "The table of runs in a.sam is damaged: " + damage.says);
  }
  writeFile("few.sam", "0\n1\n2\n0\n1\t2\t\n");
  refuses("few.sam", "The sample needs the factors T, kI, kC, v1, v2, l1, l2, RI1, RI2, RC1, RC2 and W");
  writeFile("range.sam",
            "0\n2\n12\n0\n" + line(kRun0) + line({"1", "1", "1", "0", "1", "1", "1", "1", "1", "1", "1", "1"}));
  refuses("range.sam", "Run 1: v1 must be above 0");
  writeFile("nan.sam", "0\n1\n12\n0\n" + line({"nan", "1", "1", "1", "1", "1", "1", "1", "1", "1", "1", "1"}));
  refuses("nan.sam", "Run 0: T must be a number");
  EXPECT_FALSE(std::filesystem::exists("levele.out"));
  writeFile("good.sam", kTwoRuns);
  refuses("good.sam none/x.out", "Can't write none/x.out: No such file or directory");
  refuses("good.sam /dev/full", "Can't write /dev/full: No space left on device");
}

TEST_F(LevelEProgram, damagedTablesAreReadOrRefused) {
  tarvex::test::forEachDamage(kTwoRuns, [](const std::string& what, const std::string& text) {
    writeFile("damaged.sam", text);
    SampleTable table;
    const bool read = table.read("damaged.sam");
    EXPECT_EQ(table.errorText().empty(), read) << what;
    EXPECT_EQ(table.runs() > 0, read) << what;
    EXPECT_LE(table.runs() * table.columns(), 24) << what;
  });
}

}  // namespace
}  // namespace levele
