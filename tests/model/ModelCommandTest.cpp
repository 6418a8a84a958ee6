#include "model/ModelCommand.h"

#include <cstdlib>
#include <filesystem>

#include "support/TempDirectory.h"
#include "support/Test.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

TEST(ModelCommandTest, WordsArePartedAsAShellDoesAndAPathStaysWhole) {
  const test::TempDirectory directory;
  const test::ScopedCurrentDirectory stay;
  std::filesystem::current_path(directory.path());
  test::writeFile(directory.file("my model"), "");
  std::filesystem::create_directory(directory.file("bin"));
  test::writeFile(directory.file("bin/model"), "");
  std::filesystem::permissions(directory.file("bin/model"), std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  ASSERT_EQ(::setenv("PATH", (directory.file("none") + ':' + directory.file("bin")).c_str(), 1), 0);
  const std::string here = directory.path() + '/';
  const struct {
    const char* text;
    std::string command;  // or the problem
  } rows[] = {
      {"flood", '"' + here + "flood\" \"S\""},
      {"/no such/model.exe", "\"/no\" \"such/model.exe\" \"S\""},
      {"my model", '"' + here + "my model\" \"S\""},
      {"./flood --seed 7", '"' + here + "./flood\" \"--seed\" \"7\" \"S\""},
      {"./flood -i{sample} --out={output} {sample}", '"' + here + "./flood\" \"-iS\" \"--out=O\" \"S\""},
      {"./f 'a \"b\\' \"c 'd\\\"\" e\\ f '' $HOME *",
       '"' + here + "./f\" \"a \"b\\\" \"c 'd\"\" \"e f\" \"\" \"$HOME\" \"*\" \"S\""},
      {"model -c x", '"' + here + "bin/model\" \"-c\" \"x\" \"S\""},
      {"./f 'open", "The quote at character 5 isn't closed."},
      {" ", "There is no program."},
  };
  for (const auto& row : rows) {
    ModelCommand command;
    std::string problem;
    const bool isMade = makeModelCommand(row.text, "S", "O", command, problem);
    const std::string text = isMade ? command.text() : problem;
    EXPECT_EQ(text, row.command) << row.text;
  }
  EXPECT_EQ(::setenv("PATH", path.c_str(), 1), 0);
  EXPECT_EQ(programOf("my model"), "my model");
  EXPECT_EQ(programOf("'./a b' {sample}"), "./a b");
}

}  // namespace
}  // namespace tarvex
