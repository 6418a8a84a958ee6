#include "app/ProjectConfiguration.h"

#include <string_view>
#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"

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

// Takes the line of a heading. Any line but the heading itself stands for a section that isn't there.
bool readHeading(TextReader& in, std::string_view heading) {
  std::string line;
  return in.readLine(line, kMaxHeading) && line == heading;
}

}  // namespace

void ProjectConfiguration::setPrep(PrepConfiguration part) {
  prep = std::move(part);
  hasPrep = true;
}

void ProjectConfiguration::setModel(ModelConfiguration part) {
  model = std::move(part);
  hasModel = true;
}

void ProjectConfiguration::setVels(VelsConfiguration part) {
  vels = std::move(part);
  hasVels = true;
}

void ProjectConfiguration::resetPrep() {
  prep = PrepConfiguration();
  hasPrep = false;
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

void ProjectConfiguration::assign(ProjectConfiguration other) {
  resetAll();
  if (other.hasPrep) setPrep(std::move(other.prep));
  if (other.hasModel) setModel(std::move(other.model));
  if (other.hasVels) setVels(std::move(other.vels));
  fileName = std::move(other.fileName);
}

bool ProjectConfiguration::load(const std::string& path) {
  TextReader in = TextReader::fromFile(path);
  ProjectConfiguration loaded;
  if (!loaded.read(in)) return false;
  loaded.fileName = path;
  assign(std::move(loaded));
  return true;
}

bool ProjectConfiguration::read(TextReader& in) {
  std::string rest;
  hasPrep = readHeading(in, kPrepHeading);
  if (hasPrep && (!prep.read(in) || !in.readLine(rest, kMaxHeading))) return false;
  // The record of a model begins with a line of its own, in other files the empty one that ends the sample's record;
  // here its reader takes the heading for it.
  hasModel = in.peekLine(kMaxHeading) == kModelHeading;
  if (hasModel ? !model.read(in) || !in.readLine(rest, kMaxHeading) : !in.readLine(rest, kMaxHeading)) return false;
  hasVels = readHeading(in, kVelsHeading);
  if (hasVels && !vels.load(in)) return false;
  return in.ok();
}

bool ProjectConfiguration::save(const std::string& path) {
  fileName = path;
  return save();
}

bool ProjectConfiguration::save() const {
  if (fileName == kNoFile) return false;
  TextWriter out(fileName);
  writeHeading(out, kPrepHeading, hasPrep);
  if (hasPrep) prep.write(out);
  writeHeading(out, kModelHeading, hasModel);
  if (hasModel) {
    model.write(out);
    out << '\n';
  }
  writeHeading(out, kVelsHeading, hasVels);
  if (hasVels) vels.save(out);
  return out.commit();
}

}  // namespace tarvex
