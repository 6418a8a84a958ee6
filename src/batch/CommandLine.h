#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "batch/PartsOptions.h"
#include "sampling/SamplerSettings.h"

namespace tarvex {

// What the words of the command line ask for, one structure a subcommand. Only what was given is set.

struct SampleOptions {
  std::string factorFile;
  std::string output;
  std::string method;
  SamplerSettings settings;  // the numbers; the others are words that have yet to be read
  std::optional<std::string> mode;
  std::vector<std::string> groups;  // NAME=a,b,c
  std::optional<std::string> rowsFile;
  bool strict = false;  // what is doubtful is refused
};

struct ImportOptions {
  std::string externalFile;
  std::string output;
};

struct RunOptions {
  std::string sampleFile;
  std::string output;
  std::string modelFile;                  // an internal model, or
  std::optional<std::string> executable;  // a program to start, if any, and
  std::string modelOutput;                // the file that it writes, or wrote elsewhere, or
  std::optional<std::string> workbook;    // one to compute, or
  bool readOnly = false;                  // only to read, or
  std::vector<std::string> inputCells;    // to drive by its cells: "x1=Model!B3", and
  std::vector<std::string> outputCells;   // "y=Model!F9"
  std::string tryRow;                     // "3", "means": only this run is tried, and nothing is written
  PartsOptions parts;                     // how it is run in parts, if so
};

struct AnalyseOptions {
  std::string input;
  std::string output;  // empty: nothing is written back
  std::vector<std::string> variables;
  bool uncertainty = false;
  bool sensitivity = false;
  std::optional<double> confidence;
  std::optional<double> kolmogorov;
  std::optional<double> alpha;
  std::vector<double> quantiles;  // in percent, beside the usual ones
  std::vector<double> thresholds;
  std::optional<double> interval;  // confidence of the intervals of both
  bool logScale = false;
  std::string csvFile;
  std::string jsonFile;
  std::string tablesDirectory;
  std::string plotsDirectory;
  std::string plotFormat = "svg";
};

struct PlotOptions {
  std::string input;
  std::string output;                  // the picture, or
  std::string selection;               // a sample file of the kept runs, or both
  std::string kind;                    // empty: no picture
  std::vector<std::string> variables;  // lists of factors and variables
  std::vector<std::string> filters;    // NAME=LOWER:UPPER
  std::string region;                  // two of them
  bool showDropped = false;
  std::string colours;        // of a set; empty: those that can be told apart
  std::string form = "area";  // of a histogram
  bool logScale = false;
  std::string bins;   // of a histogram; empty: as many as suit the runs
  bool logX = false;  // of a scattergram or over time
  bool logY = false;  // of a scattergram, as all that follow
  bool jitter = false;
  std::string shade;    // "yes", "no"; empty: where there are many points
  bool ranks = false;   // of a map of correlations
  std::string measure;  // words of measures; empty: the usual ones
  std::string format;   // empty: by the suffix
  std::optional<double> width;
  std::optional<double> height;
  std::optional<double> widthMillimetres;  // go before the others
  std::optional<double> heightMillimetres;
  double zoom = 1.0;
  std::string font;                // a family; empty: the usual one
  std::optional<double> fontSize;  // of titles of axes, in points
};

struct ReportOptions {
  std::string input;
  std::string output;               // a page of HTML or a PDF, by its suffix
  std::string title;                // empty: the input's name
  std::string author;               // empty: nobody is named
  std::optional<std::string> date;  // nothing: today
};

struct ProjectOptions {
  std::string input;    // a sample file, a post-processor file or a project
  std::string project;  // what to write; empty: not asked for
  std::string sample;
  std::string results;
};

struct ShowOptions {
  std::string file;
};

struct CheckOptions {
  std::vector<std::string> files;
  std::string kind;        // empty: as their names or first lines tell
  std::string factorFile;  // to whose factors rows belong
};

struct DemoOptions {
  std::string caseName;
};

using Command = std::variant<std::monostate, SampleOptions, ImportOptions, RunOptions, WorkbookPartOptions,
                             ResumeOptions, StatusOptions, CancelOptions, AnalyseOptions, PlotOptions, ReportOptions,
                             ProjectOptions, ShowOptions, CheckOptions, DemoOptions>;

struct CommandLine {
  Command command;
  int status = 0;           // of the process, where there is no command
  std::size_t threads = 0;  // that a computation may use; 0: all
};

// The words after the program's name. On wrong usage the status is 2 with the reason on `errors`; after a request for
// help it is 0 with the text on `out`. In both cases the result holds no command.
CommandLine parseCommandLine(const std::vector<std::string>& words, std::ostream& out, std::ostream& errors);

}  // namespace tarvex
