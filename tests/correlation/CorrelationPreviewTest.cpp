#include "correlation/CorrelationPreview.h"

#include "factors/Normal.h"
#include "factors/Uniform.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

using Preview = bool (*)(Distribution&, Distribution&, double, CorrelationPreview&, std::string&);

bool ranks(Distribution& first, Distribution& second, double correlation, CorrelationPreview& preview,
           std::string& message) {
  return previewRankCorrelation(first, second, static_cast<float>(correlation), preview, message);
}

TEST(CorrelationPreview, pointsHaveTheCorrelation) {
  for (const Preview preview : {Preview(ranks), Preview(previewTreeLink)})
    for (const double target : {0.0, 0.5, 0.95, -0.8}) {
      Normal first;
      Uniform second;
      CorrelationPreview points;
      std::string message;
      ASSERT_TRUE(preview(first, second, target, points, message)) << message;
      ASSERT_EQ(points.x.size(), 250u);
      EXPECT_NEAR(rankCorrelation(points.x, points.y), target, rankTolerance(target, 250));
      for (const double y : points.y) EXPECT_TRUE(y >= 0.0 && y <= 1.0);
      EXPECT_GT(*std::max_element(points.x.begin(), points.x.end()), 1.5);  // of the normal, not of the uniform
    }
}

TEST(CorrelationPreview, refusals) {
  CorrelationPreview points;
  std::string message;
  Normal good;
  Normal flat;
  ASSERT_TRUE(flat.setStdDeviation(0.0));
  EXPECT_FALSE(previewRankCorrelation(good, good, 1.5f, points, message));
  EXPECT_EQ(message, "The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated.");
  EXPECT_FALSE(previewRankCorrelation(flat, good, 0.5f, points, message));
  EXPECT_EQ(message, "I cannot calculate the inverse cumulative of the first factor");
  EXPECT_FALSE(previewTreeLink(good, flat, 0.5, points, message));
  EXPECT_EQ(message, "I cannot calculate the inverse cumulative of the second factor");
}

}  // namespace
}  // namespace tarvex::test
