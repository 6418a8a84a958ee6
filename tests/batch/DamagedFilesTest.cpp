#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/ProjectConfiguration.h"
#include "base/TextReader.h"
#include "batch/RowsFile.h"
#include "correlation/importStein.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/TabulatedValues.h"
#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"

namespace tarvex {
namespace {

using Load = std::function<bool(const std::string& path)>;

FactorList oneFactor() {
  FactorList list;
  list.addFactor(makeFactor("Uniform"));
  list.factor(0).name = "x1";
  return list;
}

// By the first word of the file's name. Each tells whether the file was accepted.
std::map<std::string, Load> readers() {
  std::map<std::string, Load> all;
  all["FactorList"] = [](const std::string& path) {
    FactorList list;
    std::string message;
    return loadFactorFile(path, list, message) || message.empty();
  };
  all["SteinFile"] = [](const std::string& path) {
    FactorList list;
    std::string message;
    return importStein(path, kSteinReplace, list, message) || message.empty();
  };
  all["TabulatedValues"] = [](const std::string& path) {
    Uniform table;
    std::string message;
    return loadTabulatedValues(path, table, message) || message.empty();
  };
  all["PrepRecord"] = [](const std::string& path) {
    PrepConfiguration prep;
    std::string message;
    return loadSampleFile(path, prep, message) || message.empty();
  };
  all["ExternalSample"] = [](const std::string& path) {
    PrepConfiguration prep;
    std::string message;
    return loadExternalSample(path, prep, message) || message.empty();
  };
  all["InternalModel"] = [](const std::string& path) {
    InternalModel model;
    std::string message;
    return loadModelFile(path, model, message) || message.empty();
  };
  all["ModelRecord"] = [](const std::string& path) {
    ModelConfiguration model;
    TextReader in = TextReader::fromFile(path);
    return model.read(in);
  };
  all["ModelOutput"] = [](const std::string& path) {
    ModelConfiguration model;
    model.choice.outputFile = path;
    std::string problem;
    return model.readModelOutput([](const std::string&, const std::string&) {}, problem) || problem.empty();
  };
  all["VelsRecord"] = [](const std::string& path) {
    VelsConfiguration vels;
    TextReader in = TextReader::fromFile(path);
    return vels.load(in);
  };
  all["PostProcessorFile"] = [](const std::string& path) {
    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
    std::string message;
    return loadPostProcessorFile(path, prep, model, vels, message) || message.empty();
  };
  all["ProjectFile"] = [](const std::string& path) { return ProjectConfiguration().load(path); };
  all["RowsFile"] = [](const std::string& path) {
    std::vector<std::vector<double>> rows;
    std::string message;
    return readRowsFile(path, oneFactor(), rows, message) || message.empty();
  };
  return all;
}

long peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Files that promise more than they hold, and inputs on which a reader once failed: each is refused, at once and
// without the memory that it asks for.
TEST(DamagedFiles, AreRefused) {
  constexpr long kAllowance = 64 * 1024;  // kilobytes; a promised table would take gigabytes
  const std::map<std::string, Load> all = readers();
  std::map<std::string, int> seen;
  for (const auto& entry : std::filesystem::directory_iterator(TARVEX_TEST_DATA "/damaged")) {
    const std::string file = entry.path().filename().string();
    const std::string reader = file.substr(0, file.find('-'));
    const auto load = all.find(reader);
    ASSERT_NE(load, all.end()) << file << " names no reader";
    ++seen[reader];
    const long before = peakKilobytes();
    EXPECT_FALSE(load->second(entry.path().string())) << file;
    EXPECT_LT(peakKilobytes() - before, kAllowance) << file;
  }
  for (const auto& [reader, load] : all) EXPECT_GT(seen[reader], 0) << "no file for " << reader;
}

}  // namespace
}  // namespace tarvex
