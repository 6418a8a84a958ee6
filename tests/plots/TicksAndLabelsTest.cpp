#include <cstddef>
#include <cstdint>

#include "base/uniformRandom.h"
#include "plots/Ticks.h"
#include "plots/labelPlacement.h"
#include "support/Test.h"

namespace tarvex {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr auto kTwo = NumberForm::TwoDecimals;
constexpr auto kShort = NumberForm::Short;

// Texts of the ticks; ' for a minor one.
std::string textsOf(const Axis& axis, int wanted) {
  std::string texts;
  for (const Tick& tick : axisTicks(axis, wanted)) {
    EXPECT_GE(tick.at, axis.lower);
    EXPECT_LE(tick.at, axis.upper);
    texts += (texts.empty() ? "" : " ") + (tick.text.empty() ? "'" : tick.text);
  }
  return texts;
}

TEST(Ticks, linearAxes) {
  // clang-format off
  const struct {
    double lower, upper;
    NumberForm form;
    int wanted;
    const char* texts;
  } cases[] = {
      {0.0,       1.0,        kTwo,                      5, "0.0 0.2 0.4 0.6 0.8 1.0"},
      {-1.0,      1.0,        NumberForm::ThreeDecimals, 4, "-1.0 -0.5 0.0 0.5 1.0"},
      {0.0,       0.003,      kTwo,                      3, "0.000 0.001 0.002 0.003"},
      {0.0008,    0.0012,     kTwo,                      4, "0.0008 0.0009 0.0010 0.0011 0.0012"},
      {100.0,     100.01,     kTwo,                      5, "100.000 100.002 100.004 100.006 100.008 100.010"},
      {0.0,       25000.0,    kTwo,                      5, "0 5000 10000 15000 20000 25000"},
      {123456.0,  123999.0,   kTwo,                      3, "123600 123800"},
      {0.0,       2.5e6,      kTwo,                      5, "0.0e+00 5.0e+05 1.0e+06 1.5e+06 2.0e+06 2.5e+06"},
      {-0.0,      2.0,        kShort,                    2, "0 1 2"},
      {-1e300,    1e300,      kTwo,                      4, "-1e+300 -5e+299 0 5e+299 1e+300"},
      {-kLargest, kLargest,   kShort,                    4, "-1e+308 0 1e+308"},
      {1e-303,    8e-8,       kTwo,                      4, "0 2e-08 4e-08 6e-08 8e-08"},
      {1e-300,    5e-300,     kTwo,                      4, "1e-300 2e-300 3e-300 4e-300 5e-300"},
      {1e16,      1e16 + 4.0, kTwo,                      4, "1.0000000000000000e+16 1.0000000000000004e+16"},
      {0.0,       5e-324,     kShort,                    4, "0 5e-324"},
      {1.0,       1.0,        kTwo,                      4, ""},
      {0.0,       kInf,  kTwo,                      4, ""},
  };
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ(textsOf({"", c.lower, c.upper, AxisScale::Linear, c.form}, c.wanted), c.texts);
  }
}

TEST(Ticks, logarithmAxes) {
  const struct {
    double lower, upper;
    int wanted;
    const char* texts;
  } cases[] = {
      {0.1, 10.0, 6, "0.1 0.2 ' ' 0.5 ' ' ' ' 1 2 ' ' 5 ' ' ' ' 10"},
      {0.5, 20.0, 3, "' ' ' ' ' 1 ' ' ' ' ' ' ' ' 10 '"},
      {1e-4, 1e5, 4, "0.0001 0.01 1 100 10000"},
      {1e-300, 1e300, 6, "1e-300 1e-200 1e-100 1 1e+100 1e+200 1e+300"},
      {3.0, 5.0, 5, "3.0 3.5 4.0 4.5 5.0"},
  };
  for (const auto& c : cases) {
    const Axis axis{"", std::log(c.lower), std::log(c.upper), AxisScale::Logarithms, kTwo};
    EXPECT_EQ(textsOf(axis, c.wanted), c.texts);
  }
  // Beyond the logarithms of doubles nothing can be named.
  EXPECT_EQ(textsOf({"", 800.0, 900.0, AxisScale::Logarithms, kTwo}, 4), "");
}

TEST(Ticks, axesHoldTheirValues) {
  const std::vector<std::vector<double>> columns = {{},          {kNan, kInf}, {0.0, -0.0},    {3.0, kNan, 3.0},
                                                    {-kLargest}, {5e-324},     {2.0, 1.0, 4.0}};
  for (const std::vector<double>& column : columns) {
    const Axis axis = axisOver("", column, kTwo);
    ASSERT_LT(axis.lower, axis.upper);
    ASSERT_TRUE(std::isfinite(axis.lower) && std::isfinite(axis.upper));
    for (const double value : column)
      EXPECT_TRUE(!std::isfinite(value) || (axis.lower <= value && value <= axis.upper));
  }
  const Axis exact = axisOver("", columns.back(), kTwo);
  EXPECT_EQ(exact.lower, 1.0);
  EXPECT_EQ(exact.upper, 4.0);
}

TEST(Ticks, numbersInTheirForm) {
  const struct {
    double value;
    NumberForm form;
    const char* text;
  } cases[] = {{0.5, kTwo, "0.50"},           {0.0005, kTwo, "0.0005"}, {10000.0, kTwo, "10000.00"},
               {-12345.0, kTwo, "-1.23e+04"}, {0.5, kShort, "0.5"},     {-0.0, kTwo, "0"},
               {kNan, kTwo, "nan"},           {-kInf, kTwo, "-inf"},    {2.0, NumberForm::FourDecimals, "2.0000"}};
  for (const auto& c : cases) EXPECT_EQ(formNumber(c.value, c.form), c.text);
  const struct {
    double value, span;
    const char* text;
  } limits[] = {{3.14159, 6.28, "3.14"}, {2000.0, 2001.0, "2000"}, {0.0562, 0.9, "0.056"},         {-0.001, 500.0, "0"},
                {5e-5, 4e-5, "5e-05"},   {7.0, 0.0, "7"},          {1234567.0, 10.0, "1.235e+06"}, {0.5, 1.0, "0.5"}};
  for (const auto& c : limits) EXPECT_EQ(limitNumber(c.value, c.span), c.text);
}

constexpr double kRadius = 3.0;
constexpr Rect kBounds{10.0, 20.0, 600.0, 400.0};

// Random marks; the texts are of three to nineteen wide letters.
std::vector<LabelToPlace> randomLabels(std::size_t count, double width) {
  restoreInitialRandomState();
  std::int32_t state = 17;
  std::vector<LabelToPlace> labels(count);
  for (LabelToPlace& label : labels) {
    label = {kBounds.x + kBounds.width * uniformRandom(state), kBounds.y + kBounds.height * uniformRandom(state), width,
             13.0};
  }
  return labels;
}

void expectNoOverlaps(std::size_t count, double width) {
  const std::vector<LabelToPlace> labels = randomLabels(count, width);
  const std::vector<PlacedLabel> placed = placeLabels(labels, kRadius, kBounds);
  ASSERT_EQ(placed.size(), labels.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (!placed[i].placed) continue;
    EXPECT_TRUE(placed[i].box.within(kBounds));
    for (std::size_t j = 0; j < count; ++j) {
      const Rect mark = Rect{labels[j].x, labels[j].y, 0.0, 0.0}.grown(kRadius);
      EXPECT_FALSE(placed[i].box.overlaps(mark)) << i << " on the mark of " << j;
      if (i == j || !placed[j].placed) continue;
      EXPECT_FALSE(placed[i].box.overlaps(placed[j].box)) << i << " on " << j;
      if (!placed[j].led) continue;
      for (double part = 0.0; part < 1.0; part += 0.05) {
        const double x = labels[j].x + (placed[j].lineX - labels[j].x) * part;
        const double y = labels[j].y + (placed[j].lineY - labels[j].y) * part;
        EXPECT_FALSE(placed[i].box.holds(x, y)) << "the line of " << j << " through " << i;
      }
    }
  }
}

TEST(LabelPlacement, nothingOverlapsAndAllIsPlacedWhereThereIsRoom) {
  for (const auto& [count, width] : {std::pair(20, 210.0), {371, 30.0}, {2000, 30.0}})
    expectNoOverlaps(static_cast<std::size_t>(count), width);
  const std::vector<PlacedLabel> placed = placeLabels(randomLabels(40, 30.0), kRadius, kBounds);
  EXPECT_TRUE(std::all_of(placed.begin(), placed.end(), [](const PlacedLabel& label) { return label.placed; }));
}

}  // namespace
}  // namespace tarvex
