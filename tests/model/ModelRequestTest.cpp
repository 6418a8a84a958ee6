#include "model/ModelRequest.h"

#include "support/Test.h"

namespace tarvex {
namespace {

constexpr std::int32_t kRefused = -1;

TEST(ModelRequest, isRefusedWithTheReasonOrTaken) {
  const test::TempDirectory directory;
  const std::string there = directory.file("there");
  const std::string missing = directory.file("missing");
  test::writeFile(there, "x");
  const ModelRefusal empty{"Error: Empty field", "   Empty fields not admitted"};
  const std::string noFile = ": No such file or directory";
  const std::string isDirectory = directory.path() + ": Is a directory";
  const auto executable = [](const std::string& reason) {
    return ModelRefusal{"Error: No executable file", "   Error checking model executable\n" + reason};
  };
  const auto output = [](const std::string& reason) {
    return ModelRefusal{"Error: Wrong output file", "   No output model file\n" + reason};
  };
  const struct {
    const char* name;
    bool execute, spreadsheet;
    std::string executable, outputFile;
    std::int32_t kind;
    ModelRefusal refusal;
  } cases[] = {
      {"no executable named", true, false, "", there, kRefused, empty},
      {"no output file named", true, false, there, "", kRefused, empty},
      {"nothing to read named", false, false, there, "", kRefused, empty},
      {"no such executable", true, false, missing, there, kRefused, executable(missing + noFile)},
      {"a directory to execute", true, false, directory.path(), there, kRefused, executable(isDirectory)},
      {"no such output file to read", false, false, "", missing, kRefused, output(missing + noFile)},
      {"a directory to read", false, false, there, directory.path(), kRefused, output(isDirectory)},
      {"output still to come", true, false, there, missing, kExternalExecutable, {}},
      {"output that is there", false, false, "", there, kNoModelToStart, {}},
      {"a workbook", true, true, "Excel Application", missing, kExternalExecutable, {}},
  };
  for (const auto& c : cases) {
    ModelChoice model;
    model.setExternal("before", "before", 0);
    const auto refusal = acceptModelRequest(
        {.execute = c.execute, .spreadsheet = c.spreadsheet, .executable = c.executable, .outputFile = c.outputFile},
        model);
    EXPECT_EQ(refusal.has_value(), c.kind == kRefused) << c.name;
    const ModelRefusal told = refusal.value_or(ModelRefusal());
    EXPECT_EQ(told.title + told.text, c.refusal.title + c.refusal.text) << c.name;
    EXPECT_EQ(model.executable, refusal ? "before" : c.executable) << c.name;
    EXPECT_EQ(model.outputFile, refusal ? "before" : c.outputFile) << c.name;
    EXPECT_EQ(model.kind, refusal ? ModelChoice().kind : c.kind) << c.name;
    EXPECT_EQ(model.spreadsheet, !refusal && c.spreadsheet ? 1 : 0) << c.name;
  }
}

TEST(ModelRequest, equationsMustBeThereAndGiveResults) {
  ModelChoice model;
  const ModelRequest internal{.internal = true};
  std::optional<ModelRefusal> refusal = acceptModelRequest(internal, model);
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->title + refusal->text, "Error: No model loaded   No internal model loaded");

  auto equations = std::make_unique<InternalModel>();
  ASSERT_TRUE(equations->addVariable("a") && equations->addExpression(0, "y", "a", 0));
  model.setInternalModel(std::move(equations));
  refusal = acceptModelRequest(internal, model);
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->title + refusal->text, "Error: Empty model   Model produces no result");

  ASSERT_TRUE(model.internalModel()->addExpression(1, "z", "a", 1));
  model.kind = kNoModelToStart;
  EXPECT_FALSE(acceptModelRequest(internal, model));
  EXPECT_EQ(model.kind, kInternalModel);
}

}  // namespace
}  // namespace tarvex
