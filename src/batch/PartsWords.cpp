#include "batch/PartsWords.h"

#include <CLI/CLI.hpp>
#include <limits>

#include "parts/PartSettings.h"

namespace tarvex {

namespace {

constexpr std::int64_t kMostSeconds = 30L * 24 * 3600;
constexpr std::int64_t kMostMegabytes = std::int64_t{1} << 24;

// A whole number of 1 to `most`.
void addCount(CLI::App& app, const char* names, std::optional<std::int64_t>& value, std::int64_t most,
              const char* help) {
  app.add_option(names, value, help)->check(CLI::Range(std::int64_t{1}, most))->type_name("INT");
}

CLI::Validator policyCheck() {
  return {[](std::string& word) {
            PartSettings settings;
            return parsePolicy(word, settings) ? "" : word + " is none of stop, retry:N and nan:N";
          },
          "stop|retry:N|nan:N"};
}

// What may also change when a run goes on.
void addChangeable(CLI::App& app, PartsOptions& options) {
  addCount(app, "--jobs", options.jobs, std::numeric_limits<std::int16_t>::max(),
           "Parts at a time (default: all cores, or all that the cluster gives)");
  app.add_option("--engine", options.engine, "What carries out the parts (default local)")
      ->check(CLI::IsMember({"local", "slurm"}));
  app.add_option("--on-failure", options.onFailure,
                 "What a part that fails does: the run stops, or it is repeated so often, or its runs are then nan "
                 "(default stop)")
      ->check(policyCheck());
  addCount(app, "--time-limit", options.timeLimit, kMostSeconds, "Seconds that the model may take for a part");
  addCount(app, "--memory", options.memory, kMostMegabytes, "Megabytes that the model may take");
  app.add_option("--link", options.links, "A file or directory that each part finds beside its sample; may be repeated")
      ->allow_extra_args(false);
  app.add_option("--prologue", options.prologue, "A file of shell lines to carry out before the model");
  app.add_option("--engine-option", options.engineOptions, "A word for sbatch; may be repeated")
      ->allow_extra_args(false);
  app.add_flag("--detach", options.detach, "Go on in the background");
}

}  // namespace

void addPartsWords(CLI::App& app, PartsOptions& options) {
  addCount(
      app, "--parts", options.parts, std::numeric_limits<std::int32_t>::max(),
      "Run the program or the workbook in so many parts of the sample (default, with any option of these: as many as "
      "are sensible)");
  app.add_option("--directory", options.directory, "Directory of the run in parts (default: -o's name and .run)");
  addChangeable(app, options);
}

void addPartsCommands(CLI::App& app, PartsCommands& options, Command& command) {
  CLI::App* resume = app.add_subcommand("resume", "Go on with a run in parts; what is done isn't repeated");
  resume->add_option("RUN", options.resume.directory, "Directory of the run")->required();
  resume
      ->add_option("--only", options.resume.only,
                   "Of the parts that failed repeat this one, also while the run goes on; may be repeated")
      ->allow_extra_args(false)
      ->check(CLI::NonNegativeNumber)
      ->type_name("PART");
  addChangeable(*resume, options.resume.parts);
  resume->callback([&] { command = options.resume; });
  // For scripts of runs, not for people: no group of the help has it.
  CLI::App* part = app.add_subcommand("workbook-part", "Compute a part of a sample by a workbook")->group("");
  part->add_option("SAMPLE", options.workbookPart.sampleFile, "Sample file of the part")->required();
  part->add_option("OUTPUT", options.workbookPart.output, "File to write, as a program that is a model would")
      ->required();
  part->add_option("WORKBOOK", options.workbookPart.workbook, "The workbook, which stays as it is")->required();
  part->add_option("CELLS", options.workbookPart.cells, "The cells by which it is driven");
  part->callback([&] { command = options.workbookPart; });
  CLI::App* status = app.add_subcommand("status", "Show how far a run in parts is");
  status->add_option("RUN", options.status.directory, "Directory of the run")->required();
  status->callback([&] { command = options.status; });
  CLI::App* cancel = app.add_subcommand("cancel", "End a run in parts; what is done is kept");
  cancel->add_option("RUN", options.cancel.directory, "Directory of the run")->required();
  cancel->callback([&] { command = options.cancel; });
}

}  // namespace tarvex
