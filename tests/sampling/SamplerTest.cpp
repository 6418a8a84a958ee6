#include "sampling/Sampler.h"

#include <gtest/gtest.h>

#include "sampling/Designs.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {
namespace {

TEST(Sampler, methodsByNumber) {
  const char* const names[] = {
      "Fast", "Fixed samples", "Latin Hypercube", "QuasiRandom LpTau", "Morris", "Random", "Replicated Latin Hypercube",
      "Sobol"};
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    const std::unique_ptr<Sampler> sampler = makeSampler(method);
    ASSERT_NE(sampler, nullptr);
    EXPECT_EQ(sampler->methodId, method);
    EXPECT_EQ(sampler->methodName, names[method]);
    EXPECT_EQ(methodNameOf(method), names[method]);
    EXPECT_EQ(sampler->clone()->methodId, method);
    EXPECT_EQ(sampler->errorText, "No errors");
  }
  for (const std::int32_t method : {-1, 8, 2147483647}) {
    EXPECT_EQ(makeSampler(method), nullptr);
    EXPECT_EQ(methodNameOf(method), "");
  }
  EXPECT_EQ(makeSampler(kRandom)->seed, 1);
  EXPECT_EQ(makeSampler(kLatin)->seed, 1);
  EXPECT_EQ(makeSampler(kRepLatin)->seed, 5648423);
}

TEST(Sampler, settersKeepTheOldValueOnRefusal) {
  const std::unique_ptr<Sampler> sampler = makeSampler(kRandom);
  EXPECT_TRUE(sampler->setSamples(7));
  EXPECT_TRUE(sampler->setSeed(2147483647));
  EXPECT_FALSE(sampler->setSamples(-1));
  EXPECT_EQ(sampler->errorText, "Number of execution must be a positive value");
  for (const std::int32_t seed : {0, -1}) {
    EXPECT_FALSE(sampler->setSeed(seed));
    EXPECT_EQ(sampler->errorText, "Seed must be a value greater than 0 and less than 2,147,483,647");
  }
  EXPECT_EQ(sampler->numSamples, 7);
  EXPECT_EQ(sampler->seed, 2147483647);
  EXPECT_TRUE(sampler->setSamples(0));
}

struct Section {
  const char* name;
  std::int32_t method;
  std::string text;
};

// Replicated: 2 factors, m 2, r 3.
const std::string kRunTable = "0\t2\t5\t\n1\t3\t4\t\n0\t0\t0\t\n0\t0\t0\t\n";
const std::string kElements = "1\ta name\n-1\tk\n";

TEST(Sampler, sectionsAreReadAsWritten) {
  for (const Section& section : {
           Section{"random", kRandom, "100\n18\n1\n"},
           Section{"no runs", kRandom, "0\n0\n5648423\n"},
           Section{"Latin", kLatin, "2147483647\n3\n9\n"},
           Section{"replicated", kRepLatin, "44\n6\n2\n0\n2\n3\n" + kElements + kRunTable},
           Section{
               "not generated", kRepLatin,
               "44\n6\n2\n1\n2\n3\n" + kElements + std::string("0\t0\t0\t\n0\t0\t0\t\n") + "0\t0\t0\t\n0\t0\t0\t\n"},
           Section{"no replicates", kRepLatin, "44\n0\n2\n0\n2\n0\n" + kElements + "\n\n\n\n"},
           Section{"empty name", kRepLatin, "44\n1\n1\n0\n1\n1\n0\t\n0\t\n"},
       }) {
    SCOPED_TRACE(section.name);
    const std::unique_ptr<Sampler> sampler = makeSampler(section.method);
    ASSERT_TRUE(readSection(*sampler, section.text));
    EXPECT_EQ(sectionOf(*sampler), section.text);
    // With its two lines in front, a name that isn't the class's own included; CR LF and other white space do as well.
    std::string record = std::to_string(section.method) + "\nsome name\n" + section.text;
    TextReader in = TextReader::fromText(record + "/directory\n");
    const std::unique_ptr<Sampler> read = readSampler(in);
    ASSERT_NE(read, nullptr);
    TextWriter out;
    read->write(out);
    EXPECT_EQ(out.text(), record);
    std::string directory;
    EXPECT_TRUE(in.readLine(directory, 80));
    EXPECT_EQ(directory, "/directory");
  }
  const std::unique_ptr<Sampler> sampler = makeSampler(kLatin);
  EXPECT_TRUE(readSection(*sampler, "  12\r\n\r\n4 7 \r\n"));
  EXPECT_EQ(sectionOf(*sampler), "12\n4\n7\n");
}

TEST(Sampler, damagedSectionsLeaveTheDefaults) {
  std::vector<Section> damaged{
      {"method beyond", 8, ""},
      {"method negative", -1, ""},
      {"long name", kRandom, ""},
      {"element flag", kRepLatin, "44\n6\n2\n0\n2\n3\nx\ta\n-1\tk\n" + kRunTable},
      {"element without tab", kRepLatin, "44\n6\n2\n0\n2\n3\n1 a\n-1\tk\n" + kRunTable},
      {"long element", kRepLatin, "44\n6\n2\n0\n2\n3\n1\t" + std::string(99, 'n') + "\n-1\tk\n" + kRunTable},
      {"run of no replicate", kRepLatin,
       "44\n6\n2\n0\n2\n3\n" + kElements + "0\t2\t6\t\n1\t3\t4\t\n0\t0\t0\t\n0\t0\t0\t\n"},
      {"negative run", kRepLatin, "44\n6\n2\n0\n2\n3\n" + kElements + "0\t2\t-5\t\n1\t3\t4\t\n0\t0\t0\t\n0\t0\t0\t\n"},
      {"no base design", kRepLatin, "44\n6\n2\n0\n0\n3\n" + kElements + kRunTable},
      {"no factors", kRepLatin, "44\n6\n0\n0\n2\n3\n" + kElements + kRunTable},
      {"more than the file holds", kRepLatin, "44\n6\n2\n0\n2147483647\n2147483647\n" + kElements + kRunTable},
      {"empty lines that don't follow", kRepLatin, "44\n6\n2\n0\n2147483647\n0\n" + kElements + kRunTable},
      {"factors that don't follow", kRepLatin, "44\n6\n2147483647\n0\n2\n3\n" + kElements + kRunTable},
  };
  const auto addDamages = [&damaged](std::int32_t method, const std::string& text) {
    for (std::size_t i = 0; i < text.find_last_not_of("\t\n"); ++i) {
      damaged.push_back({"cut", method, text.substr(0, text.find_last_of("\t\n", i) + 1)});
      if (i > 0 && text[i - 1] != '\n') continue;
      for (const char* word : {"x", "1e999", "99999999999", "-1"})
        if (text[i] != '1' && text[i] != '-') damaged.push_back({"word", method, text.substr(0, i) + word + "\n"});
    }
  };
  addDamages(kRandom, "100\n18\n7\n");
  addDamages(kLatin, "100\n18\n7\n");
  addDamages(kRepLatin, "44\n6\n2\n0\n2\n3\n" + kElements + kRunTable);
  for (const Section& section : damaged) {
    SCOPED_TRACE(std::string(section.name) + ":\n" + section.text);
    const std::string name = section.name == std::string("long name") ? std::string(101, 'n') : "name";
    TextReader in = TextReader::fromText(std::to_string(section.method) + "\n" + name + "\n" + section.text);
    EXPECT_EQ(readSampler(in), nullptr);
    EXPECT_TRUE(in.fail());
    const std::unique_ptr<Sampler> sampler = makeSampler(section.method);
    if (!sampler || section.text.empty()) continue;
    TextReader again = TextReader::fromText(section.text);
    sampler->readSection(again);
    EXPECT_EQ(sampler->numSamples, 0);
    EXPECT_EQ(sampler->numFactors, 0);
    EXPECT_EQ(sampler->seed, makeSampler(section.method)->seed);
    EXPECT_EQ(sampler->methodName, methodNameOf(section.method));
  }
}

}  // namespace
}  // namespace tarvex
