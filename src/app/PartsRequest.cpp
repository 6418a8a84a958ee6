#include "app/PartsRequest.h"

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "app/FrontEnd.h"
#include "base/Paths.h"
#include "model/ExternalProcess.h"
#include "model/ModelChoice.h"
#include "model/ModelCommand.h"
#include "parts/RunDirectory.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

constexpr const char* kBatch = "tarvex-batch";
constexpr std::chrono::seconds kEnds{3};  // in which it ends what it has started

void appendOption(std::vector<std::string>& words, const char* option, std::int32_t value) {
  if (value > 0) words.insert(words.end(), {option, std::to_string(value)});
}

// Its own words, without what belongs to a shell.
std::string withoutName(std::string text) {
  const std::string name = std::string(kBatch) + ": ";
  if (text.starts_with(name)) text.erase(0, name.size());
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

void endProgram(ExternalProcess& process) {
  ::kill(process.number(), SIGTERM);
  const auto end = std::chrono::steady_clock::now() + kEnds;
  while (process.poll() == ExternalProcess::State::Running && std::chrono::steady_clock::now() < end)
    process.wait(kEventSlice);
  process.stop();
}

}  // namespace

std::vector<std::string> wordsOf(const PartsRequest& request, const std::string& sampleFile, const ModelChoice& model) {
  const PartSettings& settings = request.settings;
  std::vector<std::string> words = {"run",          sampleFile,           "-o",       request.directory + "/result.spc",
                                    "--directory",  request.directory,    "--engine", engineWord(settings.engine),
                                    "--on-failure", policyWord(settings), "--detach"};
  if (model.spreadsheet != 0)
    words.insert(words.end(), {"--workbook", absolutePath(model.outputFile)});
  else
    words.insert(words.end(),
                 {"--executable", model.executable, "--output", fs::path(model.outputFile).filename().string()});
  if (model.drivesCells()) {
    for (const NamedCell& cell : model.cells.inputs)
      words.insert(words.end(), {"--input-cell", cell.name + '=' + cell.place()});
    for (const NamedCell& cell : model.cells.outputs)
      words.insert(words.end(), {"--output-cell", cell.name + '=' + cell.place()});
  }
  appendOption(words, "--parts", request.parts);
  appendOption(words, "--jobs", settings.jobs);
  appendOption(words, "--time-limit", settings.timeLimit);
  appendOption(words, "--memory", settings.memory);
  for (const std::string& link : settings.links) words.insert(words.end(), {"--link", link});
  return words;
}

std::string freeRunDirectory(const std::string& sampleFile) {
  std::error_code error;
  std::string path = sampleFile + ".run";
  for (int number = 2; fs::exists(path, error); ++number) path = sampleFile + '.' + std::to_string(number) + ".run";
  return path;
}

std::string batchProgram() {
  std::error_code error;
  const fs::path place = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& path : {place / kBatch, place.parent_path().parent_path() / "bin" / kBatch})
    if (!error && fs::exists(path, error)) return path.string();
  return alongPath(kBatch);
}

bool runBatch(const std::vector<std::string>& words, const std::string& directory, const std::function<bool()>& goOn,
              std::string& said) {
  ExternalProcess process;
  const std::string program = batchProgram();
  if (!process.start({program, words, {}, directory + "/tarvex-batch.log", -1})) {
    said = program + ": " + std::strerror(process.error());
    return false;
  }
  while (process.poll() == ExternalProcess::State::Running && goOn()) process.wait(kEventSlice);
  const bool ended = process.poll() == ExternalProcess::State::Ended;
  if (!ended) endProgram(process);
  said = ended ? withoutName(contentOf(process.logPath())) : "Stopped.";
  return ended && process.exitCode() == 0;
}

}  // namespace tarvex
