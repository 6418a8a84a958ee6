#include "report/sampleChecksum.h"

#include "base/sampValues.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// The checksum is what a shell computes from the lines of the sample file.
TEST(SampleChecksum, ofTheLinesAsTheyStandInTheFile) {
  sampValues samples;
  ASSERT_TRUE(samples.allocate(2));
  for (const double value : {0.1, -1e-20, 12345678901.0}) {
    const double row[] = {value, 2.0 * value};
    ASSERT_NE(samples.addRow(row), 0);
  }
  EXPECT_EQ(sampleChecksum(samples), "4015988485c4cd089def14559748a468478ec083c40fd7f1dbf55c38fca590af");
  ASSERT_TRUE(samples.setOrder(1));
  EXPECT_EQ(sampleChecksum(samples), "6c18a64853e165c95e80be0f1180846cea7c32b5c9d21044ef01f991154202d8");
}

}  // namespace
}  // namespace tarvex
