#include "parts/RunRecord.h"

#include <nlohmann/json.hpp>
#include <random>

#include "base/TextWriter.h"
#include "parts/RunDirectory.h"

namespace tarvex {

namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;

Json settingsJson(const PartSettings& settings) {
  return {{"engine", engineWord(settings.engine)},
          {"jobs", settings.jobs},
          {"on-failure", policyWord(settings)},
          {"time-limit", settings.timeLimit},
          {"memory", settings.memory},
          {"links", settings.links},
          {"prologue", settings.prologue},
          {"engine-options", settings.engineOptions}};
}

void takeSettings(const Json& json, PartSettings& settings) {
  if (!parseEngine(json.at("engine"), settings.engine) || !parsePolicy(json.at("on-failure"), settings))
    throw std::invalid_argument("an unknown engine or policy");
  json.at("jobs").get_to(settings.jobs);
  json.at("time-limit").get_to(settings.timeLimit);
  json.at("memory").get_to(settings.memory);
  json.at("links").get_to(settings.links);
  json.at("prologue").get_to(settings.prologue);
  json.at("engine-options").get_to(settings.engineOptions);
}

// Sizes, one a part: their sum is the number of rows.
void takeParts(const Json& sizes, std::vector<Part>& parts) {
  std::int64_t first = 0;
  for (const Json& size : sizes) {
    const auto rows = size.get<std::int32_t>();
    if (rows < 1 || first + rows > std::numeric_limits<std::int32_t>::max())
      throw std::invalid_argument("a part of " + std::to_string(rows) + " rows");
    parts.push_back({static_cast<std::int32_t>(first), rows});
    first += rows;
  }
  if (parts.empty()) throw std::invalid_argument("no parts");
}

}  // namespace

bool RunRecord::save(const std::string& path, std::string& message) const {
  Json sizes = Json::array();
  for (const Part& part : parts) sizes.push_back(part.rows);
  const Json json = {{"version", kVersion},
                     {"id", id},
                     {"directory", directory},
                     {"sample", sampleFile},
                     {"sample-checksum", sampleChecksum},
                     {"executable", executable},
                     {"program-checksum", programChecksum},
                     {"workbook", workbook},
                     {"cells", cells},
                     {"output", outputFile},
                     {"result", resultFile},
                     {"keeps", keeps},
                     {"settings", settingsJson(settings)},
                     {"parts", sizes}};
  TextWriter out(path);
  // Paths needn't be UTF-8; what isn't can't be kept in such a file.
  try {
    out << json.dump(1) << '\n';
  } catch (const Json::exception&) {
    message = path + ": a path or an option isn't UTF-8";
    return false;
  }
  if (out.commit()) return true;
  message = out.problem();
  return false;
}

bool RunRecord::load(const std::string& path, std::string& message) {
  const std::string text = contentOf(path);
  if (text.empty()) {
    message = path + ": there is no run in parts here";
    return false;
  }
  try {
    const Json json = Json::parse(text);
    if (json.at("version") != kVersion) throw std::invalid_argument("it is of another version of Tarvex");
    RunRecord read;
    json.at("id").get_to(read.id);
    json.at("directory").get_to(read.directory);
    json.at("sample").get_to(read.sampleFile);
    json.at("sample-checksum").get_to(read.sampleChecksum);
    json.at("executable").get_to(read.executable);
    json.at("program-checksum").get_to(read.programChecksum);
    json.at("output").get_to(read.outputFile);
    read.workbook = json.value("workbook", "");
    read.cells = json.value("cells", "");
    json.at("result").get_to(read.resultFile);
    json.at("keeps").get_to(read.keeps);
    takeSettings(json.at("settings"), read.settings);
    takeParts(json.at("parts"), read.parts);
    *this = std::move(read);
    return true;
  } catch (const std::exception& error) {
    message = path + ": " + error.what();
    return false;
  }
}

std::string newRunId() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr int kLength = 8;
  std::random_device source;
  std::string id;
  for (int i = 0; i < kLength; ++i) id += kDigits[source() % kDigits.size()];
  return id;
}

}  // namespace tarvex
