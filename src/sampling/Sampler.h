#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class FactorList;
class TextReader;
class TextWriter;
class sampValues;

enum MethodId : std::int32_t {
  kFast = 0,
  kFixed = 1,
  kLatin = 2,
  kLpTau = 3,
  kMorris = 4,
  kRandom = 5,
  kRepLatin = 6,
  kSobol = 7
};
inline constexpr std::int32_t kMethodCount = 8;

// What is said of a rank correlation matrix that isn't positive semidefinite.
inline constexpr const char* kRefusedMatrix =
    "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";

// A sampling method with its settings. It fills the store with numbers in the design space, mostly uniform numbers in
// (0, 1); the value pass of PrepConfiguration turns them into factor values.
//
// generate() is resumable: all loop state lies in the sampler. Between two generations reset() must be called, and the
// factor list's order prepared.
class Sampler {
 public:
  static constexpr double kComplete = 50.0;  // percent at which the design is in the store

  virtual ~Sampler() = default;
  // A copy; null, with the reason, when a table of the sampler can't be copied.
  virtual std::unique_ptr<Sampler> clone(std::string& message) const = 0;

  [[nodiscard]] bool setSamples(std::int32_t count);  // 0 or more
  [[nodiscard]] bool setSeed(std::int32_t value);     // above 0
  virtual void setNumFactors(std::int32_t count);

  // The runs that a generation over the list would make with these settings. Some designs take less than numSamples.
  virtual std::int64_t designRuns(const FactorList& factors) const;
  // What the user should know of the sample that a generation over the list is going to make, before anything is drawn.
  // Empty when there is nothing.
  virtual std::string warningBefore(const FactorList& factors) const;
  // Goes on until `progress` is at least `targetPercent` and returns it; kComplete is as far as it goes. -1 on failure,
  // the reason in errorText, and after a stop.
  double generate(double targetPercent, sampValues& store, FactorList& factors, const Progress& watched = {});
  virtual void reset();
  // The runs of the last generation, where the method keeps a record of what each of them is for; -1 without one.
  virtual std::int64_t recordedRuns() const;

  // The section behind the lines of `methodId` and `methodName`. writeSection() ends with a line's end; readSection()
  // takes the last line of the section whole. A failed read leaves the class's defaults and the reader's fail state.
  virtual void writeSection(TextWriter& out) const = 0;
  void readSection(TextReader& in);

  // Both lines and the section.
  void write(TextWriter& out) const;

  std::int32_t methodId;
  std::string methodName;
  std::string errorText = "No errors";
  std::int32_t numFactors = 0;  // of the design, constants and relations included
  std::int32_t numSamples = 0;  // to generate; after generation what the program reports
  std::int32_t seed = 5648423;  // above 0

 protected:
  Sampler(std::int32_t id, std::int32_t defaultSamples, std::int32_t defaultSeed);
  Sampler(const Sampler&) = default;
  Sampler& operator=(const Sampler&) = default;

  // generate() without what all methods share: false on failure, the reason in errorText, and when goesOn() is false.
  // `target` is kComplete at most.
  [[nodiscard]] virtual bool fill(double target, sampValues& store, FactorList& factors) = 0;
  // The items of the section; on false the reader has failed with the reason. The sampler has been reset.
  [[nodiscard]] virtual bool readItems(TextReader& in) = 0;
  // What a section that can't be read leaves.
  virtual void restoreDefaults() = 0;

  // False, with the text.
  bool refuse(const std::string& text);
  // False, with the text, when there is nothing to generate. Requires: numFactors set.
  [[nodiscard]] bool requireSamples();
  // Passes on whether the store did what it was asked; if not, its reason becomes errorText.
  bool checkStore(bool done, const sampValues& store);
  // Tells who watches the generation, every so many cells; false: stop. Asked for each cell, or each run by addRun().
  [[nodiscard]] bool goesOn(std::int32_t cells) {
    constexpr std::int64_t kCellsAReport = 16384;  // a millisecond, or some where a cell takes long
    unreported_ += cells;
    return unreported_ < kCellsAReport || report();
  }
  // For a step that takes long by itself: tells the same listener, without getting further.
  Progress within() const { return watched_->part(progress / kComplete, progress / kComplete); }
  bool addRun(sampValues& store, const double* row);
  bool addRuns(sampValues& store, const double* rows, std::int32_t count);  // one after the other
  bool addRun(sampValues& store, const std::vector<double>& row) { return addRun(store, row.data()); }
  bool isAtStart() const { return progress == 0.0f && sampleIndex == 0 && factorPosition == 0; }
  // Goes on to the next cell of a walk that visits each factor `cells` times.
  void nextCell(std::int32_t cells);
  static constexpr std::int64_t kStretch = 1024;  // cells of a column that are made in one piece at most
  // The least number of cells, of `most`, after which `progressAfter` has reached `target`; `most` when none of them
  // reaches it. So many can be made in one piece, as if the progress had been looked at after each.
  template <class ProgressAfter>
  static std::int32_t cellsUntil(double target, std::int32_t most, ProgressAfter progressAfter);
  // Takes `percent` over as `progress`. As long as the phase isn't done it stays below the phase's end, which single
  // precision would round it to in a table of many millions of cells.
  void setProgress(double percent, float phaseEnd, bool phaseDone);
  static float progressOf(double percent, float phaseEnd, bool phaseDone);
  // Of a design that is made run by run in one phase: `runs` of numSamples are in the store.
  void setRunProgress(std::int64_t runs);
  float runProgress(std::int64_t runs) const;
  // The least number of runs, of numSamples, that brings such a design to `target` percent; setRunProgress() says so.
  std::int32_t runsUntil(double target) const;

  // Items that several sections have; each by its own rule.
  void writeCounts(TextWriter& out) const;  // numSamples, numFactors, seed
  [[nodiscard]] bool readCounts(TextReader& in);
  [[nodiscard]] bool readRuns(TextReader& in);
  [[nodiscard]] bool readFactorCount(TextReader& in, std::int32_t least = 0);
  [[nodiscard]] bool readSeed(TextReader& in);

  std::int32_t randomState;  // the word for uniformRandom
  float progress = 0.0f;     // percent reached, 0 to kComplete
  std::int32_t sampleIndex = 0;
  std::int32_t factorPosition = 0;

 private:
  [[nodiscard]] bool report();

  const Progress* watched_ = nullptr;  // while a generation goes on
  std::int64_t unreported_ = 0;        // cells since the last report
};

template <class ProgressAfter>
std::int32_t Sampler::cellsUntil(double target, std::int32_t most, ProgressAfter progressAfter) {
  if (progressAfter(most) < target) return most;
  std::int32_t last = most;
  for (std::int32_t first = 1; first < last;) {
    const std::int32_t middle = first + (last - first) / 2;
    if (progressAfter(middle) < target)
      first = middle + 1;
    else
      last = middle;
  }
  return last;
}

// Reads a whole number that must be at least `least`; `what` says what it is.
[[nodiscard]] bool readAtLeast(TextReader& in, const char* what, std::int32_t least, std::int32_t& value);

}  // namespace tarvex
