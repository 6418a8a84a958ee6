#include "postproc/VelsConfiguration.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

bool load(const std::string& text, VelsConfiguration& vels) {
  TextReader in = TextReader::fromText(text);
  return vels.load(in);
}

TEST(VelsConfiguration, ReaderRules) {
  const std::string tail = "0\n0\n0.9\t0.75\n";
  const struct {
    const char* name;
    std::string text;
    std::string problem = "";
  } rows[] = {
      {"complete", "0\n1\ny\n1\n\n-1\n" + tail},
      {"carriage returns, no last line end", "0\r\n1\r\ny\r\n1\r\n\r\n-1\r\n0\r\n0\r\n0.9\t0.75"},
      {"no outputs", "0\n0\n\n-1\n" + tail, "line 2: the number of outputs must be at least 1, not 0"},
      {"unknown statistics", "0\n1\ny\n1\n\n17\n" + tail},
      {"indexes of no factors", "0\n1\ny\n1\n\n1\n0\n1\nindexes = yes\n" + tail},
      {"record without a name", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\n\n3\t \t1\t \t2\t \t\n" + tail,
       "line 10: the name of a factor, group or term must not be empty"},
      {"record of no variables", "0\n1\ny\n1\n\n1\n1\n0\nindexes = yes\na\n3\t \t\n" + tail,
       "line 10: the number of variables of a record must be at least 1, not 0"},
      {"kind that there is not", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\na\n4\t \t1\t \t2\t \t\n" + tail,
       "line 11: the kind of a factor must be 0 to 3, not 4"},
      {"results without bounds", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\na\n3\t \tnan\t \t-inf\t \t\n" + tail},
      {"a word for a measure", "0\n1\ny\n1\n\n1\n1\n1\nindexes = yes\na\n3\t \t1\t \tx\t \t\n" + tail,
       "line 11: expected a measure, found 'x'"},
      {"weight below 0", "0\n1\ny\n-2\n\n-1\n" + tail},
      {"name of 4095", "0\n1\n" + std::string(4095, 'y') + "\n1\n\n-1\n" + tail},
      {"name of 4096", "0\n1\n" + std::string(4096, 'y') + "\n1\n\n-1\n" + tail,
       "line 3: expected the name of an output, found a line of more than 4095 characters"},
  };
  for (const auto& row : rows) {
    VelsConfiguration vels;
    TextReader in = TextReader::fromText(row.text);
    ASSERT_EQ(vels.load(in), row.problem.empty()) << row.name;
    if (!row.problem.empty()) {
      EXPECT_EQ(in.problem(), row.problem);
      continue;
    }
    EXPECT_TRUE(vels.outputs()[0].weight >= 0.0f) << row.name;
    VelsConfiguration back;
    EXPECT_TRUE(load(textOf(vels), back)) << row.name;
    EXPECT_EQ(textOf(back), textOf(vels)) << row.name;
  }
}

TEST(VelsConfiguration, OutputsAreToldApartAndTextsFitTheirLines) {
  VelsConfiguration vels;
  std::string message;
  ASSERT_TRUE(vels.setOutputs({"y", "y_2", "y", std::string(4095, 'z'), std::string(4095, 'z')}, message));
  EXPECT_EQ(vels.outputs()[2].name, "y_3");
  EXPECT_EQ(vels.outputs()[4].name, std::string(4093, 'z') + "_2");
  EXPECT_TRUE(vels.changedNames().starts_with("The model variable y will be modified in y_3\nThe model variable zzz"));
  VelsConfiguration back;
  ASSERT_TRUE(load("0\n3\ny\n1\ny\n1\ny\n1\n\n-1\n0\n0\n0.9\t0.75\n", back));
  EXPECT_EQ(back.outputs()[1].name + back.outputs()[2].name, "y_2y_3");
  ASSERT_TRUE(load(textOf(back), vels));
  EXPECT_EQ(vels.changedNames(), "");
  for (const std::string& text : {std::string(4096, 'y'), std::string("y\nz"), std::string("y\r")}) {
    EXPECT_FALSE(vels.addVariable(text) || vels.setOutputs({text}, message));
    EXPECT_TRUE(message.starts_with("the name of an output h")) << message;
  }
}

}  // namespace
}  // namespace tarvex
