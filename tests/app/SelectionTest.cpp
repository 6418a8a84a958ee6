#include "app/Selection.h"

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "app/SmallStudy.h"
#include "base/uniformRandom.h"
#include "sampling/SampleFiles.h"

namespace tarvex {
namespace {

class SelectionTest : public test::InDirectory {
 protected:
  // A finished study of y = a - b.
  void SetUp() override {
    restoreInitialTrialState();
    ASSERT_EQ(controller_.acceptPrep(test::randomRuns({"a", "b"}, 300, file("whole.sam"))), Outcome::Done);
    ASSERT_EQ(controller_.acceptModel(test::equation("a - b")), Outcome::Done);
    ASSERT_EQ(controller_.runModel(RunController::SampleUse::Generated), Outcome::Done);
    ASSERT_EQ(controller_.readRuns({"a", "nothing"}, selection_), Outcome::Refused);
    ASSERT_EQ(controller_.readRuns({}, selection_), Outcome::Done);
    ASSERT_EQ(selection_->table()->columns.size(), 3u);
  }
  double valueOf(std::size_t column, std::int32_t run) const {
    return selection_->table()->columns[column].values[static_cast<std::size_t>(run)];
  }
  // Takes every eleventh run and of these what the filter of a leaves.
  std::vector<std::int32_t> takeSome() {
    std::vector<std::int32_t> taken, left;
    for (std::int32_t run = 3; run < 300; run += 11) {
      taken.push_back(run);
      if (valueOf(0, run) >= 0.4 && valueOf(0, run) <= 0.9) left.push_back(run);
    }
    EXPECT_TRUE(left.size() > 3 && left.size() < taken.size());
    selection_->takeRuns(taken);
    EXPECT_TRUE(selection_->setFilter(0, 0.4, 0.9, message_));
    return left;
  }

  std::string message_;
  test::ScriptedFrontEnd frontEnd_;
  RunController controller_{frontEnd_};
  std::shared_ptr<Selection> selection_;
};

TEST_F(SelectionTest, everyChangeIsToldAndAllMustAgree) {
  int told = 0;
  const auto subscription = selection_->subscribe([&] { ++told; });
  EXPECT_FALSE(selection_->setFilter(0, 0.9, 0.4, message_));
  EXPECT_EQ(message_, "  Upper bound must be greater than lower bound.");
  const std::vector<std::int32_t> left = takeSome();
  EXPECT_EQ(told, 2);
  EXPECT_EQ(selection_->runs(), left);
  EXPECT_EQ(std::ranges::count(selection_->dropped(), 0), selection_->keptCount());
  selection_->complement();
  EXPECT_EQ(selection_->keptCount(), 300 - static_cast<std::int32_t>(left.size()));
  EXPECT_FALSE(selection_->keeps(left[0]));
  selection_->clear();
  ASSERT_TRUE(selection_->setRegion({0, 0.0, 2.0}, {2, valueOf(2, 5) - 0.5, valueOf(2, 5)}, message_));
  EXPECT_FALSE(selection_->keeps(5)) << "the upper edge of a frame";
  EXPECT_GT(selection_->keptCount(), 0);
}

// The saved sample holds just these rows, the table these runs by number; what is held stays when the project moves on.
TEST_F(SelectionTest, isSavedAsASampleOfItsOwnAndAsATable) {
  const std::vector<std::int32_t> left = takeSome();
  EXPECT_EQ(controller_.saveSelectedSample(*selection_, file("whole.sam")), Outcome::Refused);
  ASSERT_EQ(controller_.saveSelectedSample(*selection_, file("kept.sam")), Outcome::Done);
  PrepConfiguration saved;
  ASSERT_TRUE(loadSampleFile(file("kept.sam"), saved, message_)) << message_;
  ASSERT_EQ(saved.samples.rows(), static_cast<std::int32_t>(left.size()));
  double row[2];
  for (std::size_t i = 0; i < left.size(); ++i) {
    ASSERT_TRUE(saved.samples.getRow(static_cast<std::int32_t>(i), row));
    for (std::size_t c = 0; c < 2; ++c) EXPECT_NEAR(row[c], valueOf(c, left[i]), 1e-9);
  }
  PrepSettings edited = test::randomRuns({"a", "b"}, 300, file("whole.sam"));
  ASSERT_TRUE(edited.sampler->setSeed(77));
  ASSERT_EQ(controller_.acceptPrep(std::move(edited)), Outcome::Done);
  ASSERT_EQ(controller_.runModel(RunController::SampleUse::Generated), Outcome::Done);
  EXPECT_EQ(controller_.saveSelectedSample(*selection_, file("late.sam")), Outcome::Refused);
  ASSERT_EQ(controller_.saveSelectedTable(*selection_, file("kept.csv")), Outcome::Done);
  const std::vector<std::string> lines = test::readLines(file("kept.csv"));
  ASSERT_EQ(lines.size(), left.size() + 1);
  EXPECT_EQ(lines[0], "run,a,b,y");
  for (std::size_t i = 0; i < left.size(); ++i) {
    EXPECT_EQ(std::stoi(lines[i + 1]), left[i] + 1);
    EXPECT_EQ(std::stod(lines[i + 1].substr(lines[i + 1].rfind(',') + 1)), valueOf(2, left[i]));
  }
}

}  // namespace
}  // namespace tarvex
