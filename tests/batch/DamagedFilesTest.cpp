#include <fmt/format.h>

#include <ctime>
#include <map>
#include <set>

#include "app/ProjectConfiguration.h"
#include "base/TextReader.h"
#include "batch/CommandFixture.h"
#include "batch/FileFindings.h"
#include "correlation/importStein.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/TabulatedValues.h"
#include "factors/TruncatedDistribution.h"
#include "factors/Uniform.h"
#include "factors/makeFactor.h"
#include "model/InternalModel.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/RowsFile.h"
#include "sampling/SampleFiles.h"
#include "support/Damage.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

#ifdef __SANITIZE_ADDRESS__
constexpr long kMostMemory = 1024 * 1024;  // it keeps what was freed
#else
constexpr long kMostMemory = 64 * 1024;  // kilobytes, for files of some; what damage promises would be gigabytes
#endif
constexpr double kMostSeconds = 5.0;  // of the processor, for one of them

// Reads a file; `written` becomes what was read, as a file again.
using Load = std::function<bool(const std::string& path, std::string& message, std::string& written)>;

template <class Part, class Read>
Load into(Read read) {
  return [read](const std::string& path, std::string& message, std::string& written) {
    Part part;
    if (!read(path, part, message)) return false;
    written = textOf(part);
    return true;
  };
}

// For a part that has no file of its own.
template <class Part>
Load record(auto read) {
  return into<Part>([read](const std::string& path, Part& part, std::string& message) {
    TextReader in = TextReader::fromFile(path);
    const bool good = (part.*read)(in);
    message = good ? "" : in.problem();
    return good;
  });
}

bool loadFactors(const std::string& path, FactorList& list, std::string& message) {
  if (!loadFactorFile(path, list, message)) return false;
  static std::set<std::string> seen;
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {  // what is loaded can be sampled, or refuses that
    auto* distribution = dynamic_cast<Distribution*>(&list.factor(i));
    if (distribution == nullptr || !seen.insert(textOf(*distribution)).second) continue;
    if (distribution->needsTable() && !distribution->prepareInverse()) continue;
    for (const double u : {1e-9, 0.3, 1.0 - 1e-9}) EXPECT_LE(distribution->value(u), INFINITY);
  }
  return true;
}

bool loadTable(const std::string& path, FactorList& list, std::string& message) {
  list.addFactor(makeFactor("Uniform"));
  return loadTabulatedValues(path, dynamic_cast<IntervalDistribution&>(list.factor(0)), message);
}

struct Rows {
  FactorList factors;
  std::vector<std::vector<double>> rows;

  void write(TextWriter& out) const {
    out.setPrecision(17);
    for (std::int32_t i = 0; i < factors.factorCount(); ++i) out << (i == 0 ? "" : ",") << factors.factor(i).name;
    for (const std::vector<double>& row : rows)
      for (std::size_t i = 0; i < row.size(); ++i) out << (i == 0 ? '\n' : ',') << row[i];
  }
};

bool loadRows(const std::string& path, Rows& rows, std::string& message) {
  return loadFactorFile(test::goldenPath("mixed.fac"), rows.factors, message) &&
         readRowsFile(path, rows.factors, rows.rows, message);
}

// As in its file, behind the sample file's name.
struct ModelRecord : ModelConfiguration {
  void write(TextWriter& out) const {
    out << '\n';
    ModelConfiguration::write(out);
  }
};

bool loadOutput(const std::string& path, ModelRecord& model, std::string& message) {
  model.choice.outputFile = path;
  return model.readModelOutput([](const std::string&, const std::string&) {}, message);
}

bool loadStudy(const std::string& path, ProjectConfiguration& study, std::string& message) {
  study.hasPrep = study.hasModel = study.hasVels = true;
  return loadPostProcessorFile(path, study.prep, study.model, study.vels, message);
}

std::string projectText(ProjectConfiguration& project) {
  const test::TempDirectory directory;
  EXPECT_TRUE(project.save(directory.file("a.psc"))) << project.errorText();
  return test::readFile(directory.file("a.psc"));
}

// The lines that a session remembers; they are refused by being forgotten.
bool loadDirectories(const std::string& path, std::string&, std::string& written) {
  const test::TempDirectory main;
  std::filesystem::copy_file(path, main.file("config.dat"));
  RememberedDirectories::forget();
  RememberedDirectories::readConfig(main.path());
  RememberedDirectories::writeConfig(main.path());
  written = test::readFile(main.file("config.dat"));
  return true;
}

struct Reader {
  const char* name;  // begins the names of its files in tests/data/damaged
  Load load;
  Load again;        // reads what `load` writes
  std::string kind;  // for a check; empty: checked in the files that hold it
  std::string message;
  std::vector<std::string> files;                              // golden ones, or texts
  std::string (*part)(ProjectConfiguration& study) = nullptr;  // of such a file
  bool isList = false;                                         // what ends early may be a shorter one
};

std::vector<Reader> readers() {
  const Load factors = into<FactorList>(loadFactors);
  const Load model = into<InternalModel>(loadModelFile);
  const Load sample = into<PrepConfiguration>(
      [](auto& path, auto& prep, auto& message) { return loadSampleFile(path, prep, message); });
  const Load external = into<PrepConfiguration>(
      [](auto& path, auto& prep, auto& message) { return loadExternalSample(path, prep, message); });
  const Load stein = into<FactorList>(
      [](auto& path, auto& list, auto& message) { return importStein(path, kSteinReplace, list, message); });
  const Load rows = into<Rows>(loadRows);
  const Load modelRecord = record<ModelRecord>(&ModelRecord::read);
  const Load vels = record<VelsConfiguration>(&VelsConfiguration::load);
  const Load results = [](auto& path, auto& message, auto& written) {
    ProjectConfiguration study;
    if (!loadStudy(path, study, message)) return false;
    written = textOf(study.prep) + textOf(study.model) + textOf(study.vels);
    return true;
  };
  const Load project = [](auto& path, auto& message, auto& written) {
    ProjectConfiguration read;
    if (!read.load(path)) return message = read.errorText(), false;
    written = projectText(read);
    return true;
  };
  const std::string output = "2\ny\nz\ntime = yes\n2\nRUN 0\n2\n0 1 2\n1 3 4\nRUN 1\n1\n0 5 6\n";
  const std::string table = "4\n2\na\nb\n1 2\n3 4.5\n2.5 1\n0.1 7\n";
  return {
      {"FactorList",
       factors,
       factors,
       "factors",
       "Error reading factors file",
       {"kinds.fac", "mixed.fac", "tree.fac", "matrix.fac", "stein.fac"},
       nullptr,
       true},
      {"InternalModel", model, model, "model", "Error reading the internal model file", {"plant.imd", "mixed.imd"}},
      {"PrepRecord",
       sample,
       sample,
       "sample",
       "Error reading samples file",
       {"fixed.sam", "morris.sam", "random-by-factor.sam", "replatin-stein.sam", "fast-groups.sam"}},
      {"ModelRecord",
       modelRecord,
       modelRecord,
       "",
       "",
       {"times-run.spc", "ishigami-run.spc"},
       [](auto& study) {
         study.model.results.cut(3);
         return '\n' + textOf(study.model);
       }},
      {"VelsRecord",
       vels,
       vels,
       "",
       "",
       {"plain.spc", "morris.spc", "unit-order2.spc", "fast-groups.spc", "pair.spc"},
       [](auto& study) { return textOf(study.vels); }},
      {"PostProcessorFile", results, results, "results", "  Error reading UA/SA file", {"morris.spc"}},
      {"ProjectFile",
       project,
       project,
       "project",
       "Error reading configuration file.",
       {"morris.spc"},
       [](auto& study) {
         study.hasPrep = study.hasModel = false;
         return projectText(study);
       }},
      {"ExternalSample", external, sample, "external", "Error reading external samples file", {table}},
      {"ModelOutput",
       into<ModelRecord>(loadOutput),
       modelRecord,
       "output",
       "Error reading model output file",
       {output}},
      {"SteinFile", stein, factors, "stein", "Error loading stein file.", {table}},
      {"TabulatedValues",
       into<FactorList>(loadTable),
       factors,
       "",
       "Error reading tabulated values file",
       {"3\n0\t1\t0.25\n1\t2.5\t0.25\n3\t4\t0.5\n"}},
      {"RowsFile", rows, rows, "rows", "", {"rows.csv"}, nullptr, true},
      {"Directories", loadDirectories, loadDirectories, "", "", {"/usr\n\n/tmp\n/\n\n"}, nullptr, true},
  };
}

struct Counts {
  int refused = 0;  // with the line
  int read = 0;
};

struct Row {
  std::map<std::string, Counts> kinds;
  double seconds = 0.0;  // of the processor, for all
  double slowest = 0.0;
};

// The most memory since the last call of resetPeak().
long peakKilobytes() {
  const std::string status = test::readFile("/proc/self/status");
  return std::stol(status.substr(status.find("VmHWM:") + 6));
}
void resetPeak() {
  test::writeFile("/proc/self/clear_refs", "5");
}

class DamagedFiles : public test::CommandFixture {
 protected:
  ~DamagedFiles() override { EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999)); }

  static std::string wholeText(const Reader& reader, const std::string& source) {
    if (source.find('\n') != std::string::npos) return source;
    if (reader.part == nullptr) return test::readFile(test::goldenPath(source));
    ProjectConfiguration study;
    std::string message;
    EXPECT_TRUE(loadStudy(test::goldenPath(source), study, message)) << message;
    return reader.part(study);
  }

  // What is wrong with how the reader takes that file, and a check, which is to agree.
  std::string tryOne(const Reader& reader, const std::string& path, Counts& counts) const {
    std::string message, written, again;
    const bool loaded = reader.load(path, message, written);
    if (!reader.kind.empty()) {
      const FileFindings found = findInFile(path, reader.kind, test::goldenPath("mixed.fac"));
      if (!loaded && found.wrong.empty()) return "a check finds nothing wrong";
      if (!loaded) message = found.wrong.front();
    }
    ++(loaded ? counts.read : counts.refused);
    if (!loaded) {
      const std::size_t at = message.find(path + ':');
      const bool lined = at != std::string::npos && std::isdigit(message[at + path.size() + 1]) != 0;
      return lined && message.starts_with(reader.message) ? "" : "refused with: " + message;
    }
    test::writeFile(path, written);
    if (!reader.again(path, message, again)) return "what was written is refused: " + message;
    return again == written ? "" : "what was written is another when it is written again";
  }
};

// Every reader, every field: refused with the system's message and the line, or loaded as something that stays what it
// is; at once, and without the memory that a damaged file asks for. TARVEX_DAMAGE_TABLE=1 prints how often which.
TEST_F(DamagedFiles, everyFieldOfEveryFile) {
  const char* const kinds[] = {"cut", "half", "letter", "negative", "0", "huge", "long", "without", "rubbish"};
  const bool shows = std::getenv("TARVEX_DAMAGE_TABLE") != nullptr;
  if (shows) fmt::print("refused with line / read{:>{}}  peak kB  slowest ms        s\n{:18}", "", 82, "");
  for (const char* kind : kinds) fmt::print("{}", shows ? fmt::format("{:>10}", kind) : "");
  for (const Reader& reader : readers()) {
    Row row;
    resetPeak();
    const long before = peakKilobytes();
    std::map<std::string, std::string> faults;  // by what it is, the first damage
    for (const std::string& source : reader.files) {
      test::forEachDamage(wholeText(reader, source), [&](const std::string& what, const std::string& text) {
        const std::string path = file("damaged");
        std::filesystem::remove(path);  // a fresh file is written faster than a truncated one
        test::writeFile(path, text);
        std::string kind = what.substr(0, what.find(' '));
        if (kind == "1e9" || kind == "2147483648" || kind == "1e400") kind = "huge";
        if (kind == "nothing") kind = "rubbish";
        Counts& counts = row.kinds[kind];
        const int read = counts.read;
        const std::clock_t start = std::clock();
        std::string fault = tryOne(reader, path, counts);
        const double took = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        row.slowest = std::max(row.slowest, took);
        row.seconds += took;
        const bool mustFail = (kind == "rubbish" || kind == "cut") && !reader.isList;
        if (fault.empty() && mustFail && counts.read > read) fault = "loads";
        if (!fault.empty()) faults.emplace(fault.substr(0, fault.find(path)), source + ' ' + what + ": " + fault);
      });
    }
    const long memory = peakKilobytes() - before;
    for (const auto& [kind, fault] : faults) ADD_FAILURE() << reader.name << ", " << fault;
    EXPECT_LT(memory, kMostMemory) << reader.name;
    EXPECT_LT(row.slowest, kMostSeconds) << reader.name;
    if (!shows) continue;
    fmt::print("\n{:18}", reader.name);
    for (const char* kind : kinds)
      fmt::print("{:>10}", fmt::format("{}/{}", row.kinds[kind].refused, row.kinds[kind].read));
    fmt::print("  {:7}  {:10.1f}  {:7.2f}", memory, row.slowest * 1000, row.seconds);
  }
  if (shows) fmt::print("\n");
}

// Files that promise more than they hold, and inputs on which a reader once failed.
TEST_F(DamagedFiles, areRefused) {
  std::map<std::string, int> seen;
  const std::vector<Reader> all = readers();
  for (const auto& entry : std::filesystem::directory_iterator(TARVEX_TEST_DATA "/damaged")) {
    const std::string name = entry.path().filename().string();
    const auto reader =
        std::ranges::find_if(all, [&](const Reader& r) { return name.starts_with(std::string(r.name) + '-'); });
    ASSERT_NE(reader, all.end()) << name << " names no reader";
    ++seen[reader->name];
    resetPeak();
    const long before = peakKilobytes();
    std::string message, written;
    EXPECT_FALSE(reader->load(entry.path().string(), message, written)) << name;
    EXPECT_FALSE(message.empty()) << name;
    EXPECT_LT(peakKilobytes() - before, kMostMemory) << name;
  }
  for (const Reader& reader : all)
    EXPECT_TRUE(seen[reader.name] > 0 || reader.name == std::string("Directories")) << "no file for " << reader.name;
}

}  // namespace
}  // namespace tarvex
