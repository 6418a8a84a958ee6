#include "sampling/SampleFiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"
#include "base/textBehind.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

namespace tarvex {

namespace {

constexpr std::size_t kExternalLineLimit = 256;

// A count of an external sample: a line of digits alone, at least 1.
bool readExternalCount(TextReader& in, const char* what, std::int32_t& count) {
  std::string line;
  if (!in.expect(what).readLine(line, kExternalLineLimit)) return false;
  const bool clean = std::none_of(line.begin(), line.end(), [](char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || isForbiddenInName(c);
  });
  TextReader number = TextReader::fromText(line);
  number >> count;
  return (clean && number.ok() && count >= 1) ||
         in.refuse(std::string(what) + " must be a whole number of 1 or more, not '" + line + "'");
}

bool readExternalNames(TextReader& in, std::int32_t count, FactorList& factors) {
  constexpr std::uint64_t kShortestNameLine = 2;
  if (!in.checkCount(count, kShortestNameLine)) return false;
  std::string line;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!in.expect("a factor name").readLine(line, kExternalLineLimit)) return false;
    const std::string_view name = firstWord(line);
    if (const std::string problem = Factor::kNameRule.problem(name); !problem.empty()) return in.refuse(problem);
    auto factor = std::make_unique<Factor>();
    factor->name = name;
    factors.addFactor(std::move(factor));
  }
  return true;
}

bool readExternalValues(TextReader& in, std::int32_t count, sampValues& samples) {
  constexpr std::uint64_t kLeastNumber = 2;  // a digit and what parts it from the next
  const std::int64_t numbers = static_cast<std::int64_t>(count) * samples.columns();
  if (!in.checkCount(numbers - 1, kLeastNumber)) return false;
  std::vector<double> row(static_cast<std::size_t>(samples.columns()));
  for (std::int32_t r = 0; r < count; ++r) {
    for (double& value : row) in.expect("a number of the sample") >> value;
    if (in.fail()) return false;
    if (samples.addRow(row.data()) == 0) return in.refuse(samples.errorText());
  }
  return true;
}

bool readExternal(TextReader& in, PrepConfiguration& prep) {
  std::int32_t runs = 0;
  std::int32_t factorCount = 0;
  if (!readExternalCount(in, "the number of samples", runs) ||
      !readExternalCount(in, "the number of factors", factorCount) || !readExternalNames(in, factorCount, prep.factors))
    return false;
  if (!prep.samples.allocate(factorCount)) return in.refuse(prep.samples.errorText());
  if (!readExternalValues(in, runs, prep.samples)) return false;
  prep.sampler = std::make_unique<RandomSampler>();
  prep.sampler->numSamples = runs;
  prep.sampler->setNumFactors(factorCount);
  SampleStatistics statistics;
  if (!statistics.compute(prep.samples)) return in.refuse(prep.samples.errorText());
  prep.sampleStatistics = std::move(statistics);
  prep.external = 1;
  return true;
}

// Whether a record can hold the path of the source.
bool isKept(const std::string& path, TextReader& in) {
  const std::string problem = PrepConfiguration::kSampleFileRule.problem(path);
  return problem.empty() || in.refuse(problem);
}

// Whether a file is there that is no sample file: those begin with four numbers, an external sample with two.
bool holdsOtherText(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  TextReader in = TextReader::fromFile(path);
  if (in.fail() || in.atEnd()) return false;
  std::int32_t number = 0;
  in >> number >> number >> number >> number;
  return in.fail();
}

}  // namespace

std::string outputNotWritten(const std::string& path) {
  return "  Error writing output file\n " + path;
}

bool loadSampleFile(const std::string& path, PrepConfiguration& prep, std::string& message, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  PrepConfiguration loaded;
  if (in.fail() || !loaded.read(in)) {
    message = withProblem("Error reading samples file", in);
    return false;
  }
  prep = std::move(loaded);
  return true;
}

bool loadExternalSample(const std::string& path, PrepConfiguration& prep, std::string& message,
                        const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  PrepConfiguration loaded;
  if (in.fail() || !readExternal(in, loaded) || !isKept(path, in)) {
    message = withProblem("Error reading external samples file", in);
    return false;
  }
  message = textBehind(in);
  loaded.sampleFile = path;
  prep = std::move(loaded);
  return true;
}

std::uint64_t recordBytes(const PrepConfiguration& prep) {
  constexpr std::uint64_t kNumber = 12;  // of a table of ten digits, the tab behind it included
  return static_cast<std::uint64_t>(prep.samples.rows()) * static_cast<std::uint64_t>(prep.samples.columns()) * kNumber;
}

bool writeSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& problem,
                     const Progress& progress) {
  if (prep.external == 1 && holdsOtherText(path)) {
    problem = path + " is no sample file. What a sample was imported from isn't written.";
    return false;
  }
  TextWriter out(path);
  out.watch(progress, recordBytes(prep));
  prep.write(out);
  if (out.commit()) return true;
  problem = out.problem();
  return false;
}

bool saveSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& message,
                    const Progress& progress) {
  std::string problem;
  if (writeSampleFile(path, prep, problem, progress)) return true;
  message = std::string(kSampleNotWritten) + '\n' + problem;
  return false;
}

}  // namespace tarvex
