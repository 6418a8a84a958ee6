#include "app/ProjectConfiguration.h"

#include <string_view>
#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxHeading = 99;  // characters of a section's first line

constexpr std::string_view kPrepHeading = "Prep Configuration";
constexpr std::string_view kModelHeading = "Model Configuration";
constexpr std::string_view kVelsHeading = "Vels Configuration";

// The heading of a section that is there, or the line that stands for one that isn't.
void writeHeading(TextWriter& out, std::string_view heading, bool present) {
  out << (present ? "" : "No ") << heading << '\n';
}

bool isHeading(std::string_view line) {
  for (const std::string_view heading : {kPrepHeading, kModelHeading, kVelsHeading})
    if (line == heading || line == "No " + std::string(heading)) return true;
  return false;
}

// Takes the line of a heading. Any line but the heading itself stands for a section that isn't there. `known` becomes
// true for a line that only a project has.
bool readHeading(TextReader& in, std::string_view heading, bool& known) {
  std::string line;
  if (!in.readLine(line, kMaxHeading)) return false;
  if (line != heading && !line.empty() && heading.starts_with(line) && in.atEnd())
    return in.refuse("the file ends within the heading of a section");
  known = known || isHeading(line);
  return line == heading;
}

// Fails the reader unless only blanks are left.
void expectEnd(TextReader& in) {
  std::string line;
  while (in.ok() && !in.atEnd())
    if (in.readLine(line, in.remaining()) && line.find_first_not_of(" \t") != std::string::npos)
      in.refuse("expected the end of the file behind the last section");
}

// Sets apart whatever is in hand from all that was before.
std::uint64_t nextMark() {
  static std::uint64_t last = 0;
  return ++last;
}

}  // namespace

void ProjectConfiguration::setPrep(PrepConfiguration part) {
  prep = std::move(part);
  hasPrep = true;
  markSample();
}

void ProjectConfiguration::setModel(ModelConfiguration part) {
  model = std::move(part);
  hasModel = true;
  resultMark_ = nextMark();
}

void ProjectConfiguration::setVels(VelsConfiguration part) {
  vels = std::move(part);
  hasVels = true;
}

void ProjectConfiguration::resetPrep() {
  prep = PrepConfiguration();
  hasPrep = false;
  markSample();
}

void ProjectConfiguration::resetModel() {
  model = ModelConfiguration();
  hasModel = false;
}

void ProjectConfiguration::resetVels() {
  vels = VelsConfiguration();
  hasVels = false;
}

void ProjectConfiguration::resetAll() {
  resetPrep();
  resetModel();
  resetVels();
}

void ProjectConfiguration::dropResults() {
  model.results.clear();
  resetVels();
  resultMark_ = nextMark();
}

void ProjectConfiguration::markSample() {
  sampleMark_ = nextMark();
}

void ProjectConfiguration::markResults() {
  resultMark_ = sampleMark_;
}

void ProjectConfiguration::assign(ProjectConfiguration other) {
  const bool belong = other.resultsBelong();
  resetAll();
  if (other.hasPrep) setPrep(std::move(other.prep));
  if (other.hasModel) setModel(std::move(other.model));
  if (other.hasVels) setVels(std::move(other.vels));
  fileName = std::move(other.fileName);
  markSample();
  if (belong) markResults();
}

bool ProjectConfiguration::load(const std::string& path, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  ProjectConfiguration loaded;
  if (in.fail() || !loaded.read(in)) {
    errorText_ = withProblem("Error reading configuration file.", in);
    return false;
  }
  loaded.fileName = path;
  assign(std::move(loaded));
  return true;
}

bool ProjectConfiguration::read(TextReader& in) {
  std::string rest;
  bool known = false;
  hasPrep = readHeading(in, kPrepHeading, known);
  if (hasPrep && (!prep.read(in) || !in.readLine(rest, kMaxHeading))) return false;
  // The record of a model begins with a line of its own, in other files the empty one that ends the sample's record;
  // here its reader takes the heading for it.
  hasModel = in.peekLine(kMaxHeading) == kModelHeading;
  if (!hasModel)
    readHeading(in, kModelHeading, known);
  else if (!model.read(in) || !in.readLine(rest, kMaxHeading))
    return false;
  hasVels = readHeading(in, kVelsHeading, known);
  if (hasVels && !vels.load(in)) return false;
  if (in.ok() && !known && !hasModel) return in.refuse("none of the file's first lines announces a section");
  expectEnd(in);
  return in.ok();
}

bool ProjectConfiguration::save(const std::string& path, const Progress& progress) {
  fileName = path;
  return save(progress);
}

bool ProjectConfiguration::save(const Progress& progress) {
  errorText_ = kProjectNotWritten;
  return fileName != kNoFile && write(fileName, progress);
}

bool ProjectConfiguration::saveCopy(const std::string& path, const Progress& progress) {
  errorText_ = kProjectNotWritten;
  return write(path, progress);
}

bool ProjectConfiguration::write(const std::string& path, const Progress& progress) {
  TextWriter out(path);
  out.watch(progress, (hasPrep ? recordBytes(prep) : 0) + (hasModel ? recordBytes(model) : 0));
  writeHeading(out, kPrepHeading, hasPrep);
  if (hasPrep) prep.write(out);
  writeHeading(out, kModelHeading, hasModel);
  if (hasModel) {
    model.write(out);
    out << '\n';
  }
  writeHeading(out, kVelsHeading, hasVels);
  if (hasVels) vels.save(out);
  if (out.commit()) return true;
  errorText_ += "\n" + out.problem();
  return false;
}

}  // namespace tarvex
