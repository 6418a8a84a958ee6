#include "app/ProjectConfiguration.h"
#include "factors/FactorFiles.h"
#include "factors/TabulatedValues.h"
#include "factors/Uniform.h"
#include "plots/measurePlots.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/ResultExport.h"
#include "report/Document.h"
#include "report/PictureFiles.h"
#include "report/StudyReport.h"
#include "report/TableFiles.h"
#include "sampling/SampleFiles.h"
#include "sampling/SampleSelection.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;
using test::FailingCalls;

using Write = std::function<bool(const std::string& path, std::string& message)>;

struct Writer {
  const char* name;
  std::string opening;  // the system's message; %s is the path
  std::string writing;  // where it differs
  Write write;
};

class UnwritableFiles : public test::InDirectory {
 protected:
  void SetUp() override {
    std::string message;
    ASSERT_TRUE(loadPostProcessorFile(test::goldenPath("plain.spc"), study_.prep, study_.model, study_.vels, message))
        << message;
    study_.hasPrep = study_.hasModel = study_.hasVels = true;
    ASSERT_TRUE(study_.vels.sensitivity);
    figure_ = measureFigures(*study_.vels.sensitivity, 0, "Y").at(0).second;
    document_ = studyReport(study_.prep, study_.model, study_.vels, {"study"});
  }

  std::vector<Writer> writers() {
    const std::string locked = "\nIs it locked by another application?";
    const auto picture = [this](PictureFormat format, PictureKind kind) -> Write {
      return [=, this](auto& path, auto& message) { return writePicture(path, figure_, format, 1.0, kind, message); };
    };
    const auto report = [this](const char* suffix) -> Write {
      return [this, suffix](const std::string& path, std::string& message) {
        const test::TempDirectory links;
        const std::string link = links.file("report") + suffix;  // the suffix decides the format
        fs::create_symlink(path, link);
        const bool saved = saveDocument(link, document_, message);
        if (const std::size_t at = message.find(link); at != std::string::npos) message.replace(at, link.size(), path);
        return saved;
      };
    };
    return {
        {"factors", "Error opening file for output", "",
         [this](auto& path, auto& message) { return saveFactorFile(path, study_.prep.factors, message); }},
        {"tabulated values", "Error opening saving file", "Error writing tabulated values file",
         [](auto& path, auto& message) { return saveTabulatedValues(path, Uniform(), message); }},
        {"internal model", "Error writing the internal model file", "",
         [this](auto& path, auto& message) { return saveModelFile(path, model_, message); }},
        {"sample", "Error trying to write to the Sample file." + locked, "",
         [this](auto& path, auto& message) { return saveSampleFile(path, study_.prep, message); }},
        {"selection", "  Error writing output file\n %s", "",
         [this](auto& path, auto& message) {
           return saveSelection(path, study_.prep, {0, 1, 2}, message);
         }},
        {"results", "Error trying to write to the Statistical post processor file." + locked, "",
         [this](auto& path, auto& message) {
           return savePostProcessorFile(path, study_.prep, study_.model, study_.vels, message);
         }},
        {"project", "Error trying to write to the Tarvex configuration file." + locked, "",
         [this](auto& path, auto& message) {
           const bool saved = study_.save(path);
           message = study_.errorText();
           return saved;
         }},
        {"CSV", "I cannot save the file", "",
         [this](auto& path, auto& message) { return exportCsv(study_.vels, path, message); }},
        {"JSON", "I cannot save the file", "",
         [this](auto& path, auto& message) { return exportJson(study_.prep, study_.vels, path, message); }},
        {"HTML", "I cannot create the file", "", report(".html")},
        {"PDF", "I cannot create the file", "", report(".pdf")},
        {"histogram", "I cannot save the file", "", picture(PictureFormat::Png, PictureKind::Uncertainty)},
        {"picture", "I cannot create the file", "", picture(PictureFormat::Svg, PictureKind::Other)},
    };
  }

  ProjectConfiguration study_;
  InternalModel model_;
  Figure figure_;
  Document document_;
};

std::string withPath(std::string text, const std::string& path) {
  if (const std::size_t at = text.find("%s"); at != std::string::npos) text.replace(at, 2, path);
  return text;
}

TEST_F(UnwritableFiles, eachSaysPathAndReasonUnderTheSystemsMessage) {
  const std::string old = file("old");
  const std::string inside = file("directory");
  const std::string missing = file("missing/file");
  test::writeFile(old, "old");
  fs::create_directory(inside);
  const struct {
    std::string path;
    FailingCalls::Call call;
    int error;  // of that call; 0: none fails
    const char* reason;
  } cases[] = {
      {inside, FailingCalls::kOpen, 0, "Is a directory"},
      {missing, FailingCalls::kOpen, 0, "No such file or directory"},
      {old, FailingCalls::kOpen, EACCES, "Permission denied"},
      {old, FailingCalls::kWrite, ENOSPC, "No space left on device"},
      {old, FailingCalls::kFsync, EIO, "Input/output error"},
      {old, FailingCalls::kRename, EROFS, "Read-only file system"},
  };
  for (const Writer& writer : writers()) {
    for (const auto& c : cases) {
      FailingCalls calls;
      if (c.error != 0) calls.fail(c.call, 1, c.error);
      std::string message;
      EXPECT_FALSE(writer.write(c.path, message)) << writer.name << ", " << c.reason;
      const bool opened = c.error != 0 && c.call != FailingCalls::kOpen;
      const std::string& first = opened && !writer.writing.empty() ? writer.writing : writer.opening;
      EXPECT_EQ(message, withPath(first, c.path) + '\n' + c.path + ": " + c.reason) << writer.name;
      EXPECT_EQ(test::readFile(old), "old") << writer.name;
      EXPECT_EQ(directory_.entries(), (std::vector<std::string>{"directory", "old"})) << writer.name;
    }
  }
}

TEST_F(UnwritableFiles, directoriesOfTablesAndPicturesNameTheFileThatFailed) {
  const Write tables = [this](auto& path, auto& message) {
    return writeTableFiles(study_.prep, study_.vels, path, kLinearScale, message);
  };
  const Write pictures = [this](auto& path, auto& message) {
    return writePictureFiles(study_.prep, study_.model, study_.vels, path, PictureFormat::Svg, kLinearScale, message);
  };
  const std::string plain = file("file");
  const std::string filled = file("filled");
  test::writeFile(plain, "");
  for (const auto& [write, first] : {std::pair(tables, "Y-uncertainty.txt"), std::pair(pictures, "Y-histogram.svg")}) {
    fs::create_directories(filled + "/" + first);
    std::string message;
    EXPECT_FALSE(write(plain, message));
    EXPECT_EQ(message, "I cannot save the file\n" + plain + ": Not a directory");
    EXPECT_FALSE(write(filled, message));
    EXPECT_EQ(message.substr(message.find('\n') + 1), filled + "/" + first + ": Is a directory");
    FailingCalls calls;
    calls.fail(FailingCalls::kWrite, 1);
    EXPECT_FALSE(write(file("new"), message));
    EXPECT_EQ(message, "I cannot save the file\n" + file("new/") + first + ": No space left on device");
    EXPECT_EQ(directory_.entries(), (std::vector<std::string>{"file", "filled"}));
    fs::remove_all(filled);
  }
}

}  // namespace
}  // namespace tarvex
