#include "plots/labelPlacement.h"

#include <cstddef>
#include <cstdint>

#include "base/uniformRandom.h"
#include "support/Test.h"

namespace tarvex {
namespace {

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
