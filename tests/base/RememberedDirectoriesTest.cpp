#include "base/RememberedDirectories.h"

#include "support/Test.h"

namespace tarvex {
namespace {

using Directories = RememberedDirectories;

class RememberedDirectoriesTest : public test::InDirectory {
 protected:
  RememberedDirectoriesTest() {
    for (const char* name : {"one", "two", "main"}) std::filesystem::create_directory(file(name));
    Directories::forget();
    Directories::enterWhenSet(true);
  }
  ~RememberedDirectoriesTest() override { Directories::forget(); }

  const std::filesystem::path before_ = std::filesystem::current_path();
  std::string main_ = file("main");
  std::string config_ = file("main/config.dat");
};

TEST_F(RememberedDirectoriesTest, EntersWhatItRemembers) {
  const std::string one = file("one");
  EXPECT_TRUE(Directories::set(Directories::Vels, one));
  EXPECT_TRUE(std::filesystem::equivalent(".", one));
  EXPECT_FALSE(Directories::set(Directories::Vels, file("gone")));
  EXPECT_EQ(Directories::get(Directories::Vels), one);
  std::filesystem::create_directory(file("two\nlines"));
  EXPECT_FALSE(Directories::set(Directories::Vels, file("two\nlines"))) << "no file could keep it";
  std::filesystem::create_directory(file("one/deep"));
  EXPECT_TRUE(Directories::set(Directories::Prep, ".\\deep"));  // kept as text
  EXPECT_EQ(Directories::get(Directories::Prep), ".\\deep");
  EXPECT_TRUE(std::filesystem::equivalent(".", file("one/deep")));
  EXPECT_TRUE(Directories::set(Directories::Prep, ""));
  EXPECT_TRUE(std::filesystem::equivalent(".", file("one/deep")));
}

TEST_F(RememberedDirectoriesTest, WritesFourLinesAndAnEmptyOne) {
  Directories::set(Directories::Prep, file("two"));
  Directories::set(Directories::ModelOutput, file("one"));
  Directories::writeConfig(main_);
  std::filesystem::current_path(before_);
  const std::string text = file("two") + "\n\n\n" + file("one") + "\n\n";
  EXPECT_EQ(test::readFile(config_), text);

  Directories::forget();
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Prep), file("two"));
  EXPECT_EQ(std::filesystem::current_path(), before_) << "nobody asked to enter it";
  Directories::enterWhenSet(true);
  Directories::readConfig(main_);
  EXPECT_TRUE(std::filesystem::equivalent(".", file("one")));
}

TEST_F(RememberedDirectoriesTest, ReadsWhatIsThere) {
  test::writeFile(config_, file("gone") + "\r\n" + file("one"));
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Prep), "");
  EXPECT_EQ(Directories::get(Directories::Vels), file("one"));

  // A line that is too long ends the reading.
  Directories::forget();
  test::writeFile(config_, std::string(1024, 'x') + "\n" + file("one") + "\n");
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Vels), "");
}

}  // namespace
}  // namespace tarvex
