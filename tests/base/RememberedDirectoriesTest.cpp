#include "base/RememberedDirectories.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

using Directories = RememberedDirectories;

class RememberedDirectoriesTest : public testing::Test {
 protected:
  RememberedDirectoriesTest() {
    for (const char* name : {"one", "two", "main"}) std::filesystem::create_directory(temp_.file(name));
    Directories::forget();
    Directories::enterWhenSet(true);
  }
  ~RememberedDirectoriesTest() override { Directories::forget(); }

  test::ScopedCurrentDirectory current_;
  const std::filesystem::path before_ = std::filesystem::current_path();
  test::TempDirectory temp_;
  std::string main_ = temp_.file("main");
  std::string config_ = temp_.file("main/config.dat");
};

TEST_F(RememberedDirectoriesTest, EntersWhatItRemembers) {
  const std::string one = temp_.file("one");
  EXPECT_TRUE(Directories::set(Directories::Vels, one));
  EXPECT_TRUE(std::filesystem::equivalent(".", one));
  EXPECT_FALSE(Directories::set(Directories::Vels, temp_.file("gone")));
  EXPECT_EQ(Directories::get(Directories::Vels), one);
  std::filesystem::create_directory(temp_.file("two\nlines"));
  EXPECT_FALSE(Directories::set(Directories::Vels, temp_.file("two\nlines"))) << "no file could keep it";
  std::filesystem::create_directory(temp_.file("one/deep"));
  EXPECT_TRUE(Directories::set(Directories::Prep, ".\\deep"));  // kept as text
  EXPECT_EQ(Directories::get(Directories::Prep), ".\\deep");
  EXPECT_TRUE(std::filesystem::equivalent(".", temp_.file("one/deep")));
  EXPECT_TRUE(Directories::set(Directories::Prep, ""));
  EXPECT_TRUE(std::filesystem::equivalent(".", temp_.file("one/deep")));
}

TEST_F(RememberedDirectoriesTest, WritesFourLinesAndAnEmptyOne) {
  Directories::set(Directories::Prep, temp_.file("two"));
  Directories::set(Directories::ModelOutput, temp_.file("one"));
  Directories::writeConfig(main_);
  std::filesystem::current_path(before_);
  const std::string text = temp_.file("two") + "\n\n\n" + temp_.file("one") + "\n\n";
  EXPECT_EQ(test::readFile(config_), text);

  Directories::forget();
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Prep), temp_.file("two"));
  EXPECT_EQ(std::filesystem::current_path(), before_) << "nobody asked to enter it";
  Directories::enterWhenSet(true);
  Directories::readConfig(main_);
  EXPECT_TRUE(std::filesystem::equivalent(".", temp_.file("one")));
}

TEST_F(RememberedDirectoriesTest, ReadsWhatIsThere) {
  test::writeFile(config_, temp_.file("gone") + "\r\n" + temp_.file("one"));
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Prep), "");
  EXPECT_EQ(Directories::get(Directories::Vels), temp_.file("one"));

  // A line that is too long ends the reading.
  Directories::forget();
  test::writeFile(config_, std::string(1024, 'x') + "\n" + temp_.file("one") + "\n");
  Directories::readConfig(main_);
  EXPECT_EQ(Directories::get(Directories::Vels), "");
}

}  // namespace
}  // namespace tarvex
