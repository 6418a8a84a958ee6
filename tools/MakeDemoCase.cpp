// Makes a demonstration case: make-demo-case CASE INPUTS OUTPUT.dem LEVELE
// From the factors and equations in the directory INPUTS, by the commands that a user would give; LEVELE is the program
// that computes the case of that name. The same inputs give the same file, byte by byte, wherever it is made.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/WorkingFile.h"
#include "batch/Commands.h"

namespace {

using Words = std::vector<std::string>;
namespace fs = std::filesystem;

struct Case {
  const char* name;  // of the file to make
  const char* stem;  // of its inputs
  Words design;
};

// The sizes keep each measure within the tolerance that the demonstration prints, and each file near a megabyte.
const Case kCases[] = {
    {"Ishigami", "ishigami", {"sobol", "--base-size", "1024"}},
    {"linear", "linear", {"latin", "--runs", "1000", "--seed", "1"}},
    {"levelE", "levelE", {"latin", "--runs", "1000", "--seed", "1"}},
    {"sobolG0", "sobolG0", {"morris", "--trajectories", "500", "--levels", "4"}},
    {"sobolG1", "sobolG1", {"sobol", "--base-size", "512"}},
    {"sobolG2", "sobolG2", {"fast", "--mode", "extended", "--runs", "12000"}},
    {"sobolG3", "sobolG3", {"replicated-latin", "--base-design", "100", "--replications", "50"}},
};

bool command(const Words& words) {
  std::ostringstream out;
  return tarvex::runBatch(words, out, std::cerr, false) == tarvex::kSucceeded;
}

// The study as a post-processor file `directory`/study.spc, all its paths below `directory`.
bool makeStudy(const Case& demo, const std::string& directory, const std::string& levele) {
  const std::string stem = directory + "/" + demo.stem;
  const std::string run = directory + "/run.spc";
  Words sampling{"sample", stem + ".fac", "-o", stem + ".sam", "--method"};
  sampling.insert(sampling.end(), demo.design.begin(), demo.design.end());
  Words running{"run", stem + ".sam", "-o", run, "--model", stem + ".imd"};
  if (!command(sampling)) return false;
  if (!fs::exists(stem + ".imd")) {
    // The program is part of no installation: the case holds its results alone.
    const std::string results = directory + "/levele.out";
    running = {"run", stem + ".sam", "-o", run, "--output", results};
    if (!command({"run", stem + ".sam", "-o", run, "--executable", levele, "--output", results})) return false;
  }
  return command(running) && command({"analyse", run, "-o", directory + "/study.spc"});
}

// The same text with the placeholder for `root` where a line begins with it.
bool deliver(const std::string& study, const std::string& root, const std::string& output) {
  tarvex::TextReader in = tarvex::TextReader::fromFile(study);
  tarvex::TextWriter out(output);
  std::string line;
  while (in.ok() && !in.atEnd()) {
    if (!in.readLine(line, in.remaining())) return false;
    if (line.starts_with(root)) line.replace(0, root.size(), "[MAINDIR]");
    if (line.find(root) != std::string::npos) return false;
    out << line << '\n';
  }
  return out.commit();
}

bool make(const Case& demo, const std::string& inputs, const std::string& output, const std::string& levele) {
  std::string root = tarvex::WorkingFile::directory() + "/tarvex-case-XXXXXX";
  if (mkdtemp(root.data()) == nullptr) return false;
  const std::string directory = root + "/Demo";
  fs::create_directory(directory);
  for (const auto& entry : fs::directory_iterator(inputs))
    if (entry.path().stem() == demo.stem) fs::copy_file(entry.path(), directory / entry.path().filename());
  bool done = true;
  fs::current_path(directory);  // where the program of a case writes its results
  using Directories = tarvex::RememberedDirectories;
  for (int kind = 0; kind < Directories::kCount; ++kind)
    done = done && Directories::set(static_cast<Directories::Kind>(kind), directory);
  done = done && makeStudy(demo, directory, levele) && deliver(directory + "/study.spc", root, output);
  fs::remove_all(root);
  return done;
}

}  // namespace

int main(int count, char** words) {
  if (count != 5) {
    std::cerr << "make-demo-case CASE INPUTS OUTPUT.dem LEVELE\n";
    return 2;
  }
  const auto* demo = std::ranges::find_if(kCases, [&](const Case& c) { return std::string(c.name) == words[1]; });
  // Relative paths are the caller's: a case is made in a directory of its own.
  const std::string inputs = fs::absolute(words[2]).string();
  const std::string output = fs::absolute(words[3]).string();
  const std::string levele = fs::absolute(words[4]).string();
  if (demo != std::end(kCases) && make(*demo, inputs, output, levele)) return 0;
  std::cerr << "The case " << words[1] << " can't be made.\n";
  return 1;
}
