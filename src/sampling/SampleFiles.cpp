#include "sampling/SampleFiles.h"

#include <algorithm>
#include <cctype>

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

namespace tarvex {

namespace {

constexpr std::size_t kExternalLineLimit = 256;

// A count of an external sample: a line of digits alone, at least 1.
bool readExternalCount(TextReader& in, std::int32_t& count) {
  std::string line;
  if (!in.readLine(line, kExternalLineLimit)) return false;
  const bool clean = std::none_of(line.begin(), line.end(), [](char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || isForbiddenInName(c);
  });
  TextReader number = TextReader::fromText(line);
  number >> count;
  return clean && number.ok() && count >= 1;
}

bool readExternalNames(TextReader& in, std::int32_t count, FactorList& factors) {
  constexpr std::uint64_t kShortestNameLine = 2;
  if (!in.checkCount(count, kShortestNameLine)) return false;
  std::string line;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!in.readLine(line, kExternalLineLimit)) return false;
    const std::string_view name = firstWord(line);
    if (name.empty() || isForbiddenAtNameStart(name.front())) return false;
    auto factor = std::make_unique<Factor>();
    factor->name = name;
    factors.addFactor(std::move(factor));
  }
  return true;
}

bool readExternalValues(TextReader& in, std::int32_t count, sampValues& samples) {
  std::vector<double> row(static_cast<std::size_t>(samples.columns()));
  for (std::int32_t r = 0; r < count; ++r) {
    for (double& value : row) in >> value;
    if (in.fail() || samples.addRow(row.data()) == 0) return false;
  }
  return true;
}

}  // namespace

bool loadSampleFile(const std::string& path, PrepConfiguration& prep, std::string& message, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  PrepConfiguration loaded;
  if (in.fail() || !loaded.read(in)) {
    message = "Error reading samples file";
    return false;
  }
  prep = std::move(loaded);
  return true;
}

bool loadExternalSample(const std::string& path, PrepConfiguration& prep, std::string& message,
                        const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  PrepConfiguration loaded;
  std::int32_t runs = 0;
  std::int32_t factorCount = 0;
  if (!readExternalCount(in, runs) || !readExternalCount(in, factorCount) ||
      !readExternalNames(in, factorCount, loaded.factors) || !loaded.samples.allocate(factorCount) ||
      !readExternalValues(in, runs, loaded.samples)) {
    message = "Error reading external samples file";
    return false;
  }
  auto sampler = std::make_unique<RandomSampler>();
  if (!sampler->setSamples(runs)) return false;
  sampler->setNumFactors(factorCount);
  loaded.sampler = std::move(sampler);
  loaded.sampleStatistics.emplace().compute(loaded.samples);
  loaded.external = 1;
  loaded.sampleFile = path;
  prep = std::move(loaded);
  return true;
}

std::uint64_t recordBytes(const PrepConfiguration& prep) {
  constexpr std::uint64_t kNumber = 12;  // of a table of ten digits, the tab behind it included
  return static_cast<std::uint64_t>(prep.samples.rows()) * static_cast<std::uint64_t>(prep.samples.columns()) * kNumber;
}

bool saveSampleFile(const std::string& path, const PrepConfiguration& prep, std::string& message,
                    const Progress& progress) {
  TextWriter out(path);
  out.watch(progress, recordBytes(prep));
  prep.write(out);
  if (out.commit()) return true;
  message = "Error trying to write to the Sample file.\nIs it locked by another application?";
  return false;
}

}  // namespace tarvex
