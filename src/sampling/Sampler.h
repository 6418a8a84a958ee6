#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

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

// The warning of a generation whose rank correlation matrix isn't positive semidefinite: the sample is made without
// correlation.
inline constexpr const char* kRefusedMatrix =
    "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";

// A sampling method with its settings. It fills the store with numbers in the design space, mostly uniform numbers in
// (0, 1); the value pass of PrepConfiguration turns them into factor values.
//
// generate() is resumable: all loop state lies in the sampler. Between two generations reset() must be called, and the
// factor list's order prepared.
class Sampler {
 public:
  virtual ~Sampler() = default;
  virtual std::unique_ptr<Sampler> clone() const = 0;

  // Goes on until `progress` is at least `targetPercent` (0 to 50) and returns it; -1 on failure, the reason in
  // errorText.
  virtual double generate(double targetPercent, sampValues& store, FactorList& factors) = 0;
  virtual void setNumFactors(std::int32_t count) { numFactors = count; }
  virtual void reset();

  // The section behind the lines of `methodId` and `methodName`. write() ends with a line's end; read() takes the last
  // line of the section whole. A failed read leaves the class's defaults and the reader's fail state.
  virtual void writeSection(TextWriter& out) const = 0;
  virtual void readSection(TextReader& in) = 0;

  // Both lines and the section.
  void write(TextWriter& out) const;

  bool setSamples(std::int32_t count);
  bool setSeed(std::int32_t value);

  std::int32_t methodId;
  std::string methodName;
  std::string errorText = "No errors";
  std::int32_t numFactors = 0;  // of the design, constants and relations included
  std::int32_t numSamples = 0;  // to generate; after generation what the program reports
  std::int32_t seed = 5648423;  // above 0
  // A warning for the user that arose in generation and did not end it; empty when there is none.
  std::string warningText;

 protected:
  Sampler(std::int32_t id, std::int32_t defaultSamples, std::int32_t defaultSeed);
  Sampler(const Sampler&) = default;
  Sampler& operator=(const Sampler&) = default;

  // False, with the reason in errorText, when there is nothing to generate. Requires: numFactors set.
  bool hasSamples();
  // Passes on whether the store did what it was asked; if not, its reason becomes errorText.
  bool checkStore(bool done, const sampValues& store);
  // Goes on to the next cell of a walk that visits each factor `cells` times.
  void nextCell(std::int64_t cells);
  // Takes `percent` over as `progress`. As long as the phase isn't done it stays below the phase's end, which single
  // precision would round it to in a table of many millions of cells.
  void setProgress(double percent, float phaseEnd, bool phaseDone);
  // Of a design that is made run by run in one phase: `runs` of numSamples are in the store.
  void setRunProgress(std::int64_t runs);

  // The section of the random methods: numSamples, numFactors, seed. Reading gives false on bad content.
  void writeCounts(TextWriter& out) const;
  [[nodiscard]] bool readCounts(TextReader& in);

  std::int32_t randomState;  // the word for uniformRandom
  float progress = 0.0f;     // percent reached, 0 to 50
  std::int32_t sampleIndex = 0;
  std::int32_t factorPosition = 0;
};

// The name of a method as files and panels show it; empty for a number outside 0 to 7.
std::string_view methodNameOf(std::int32_t methodId);
// A sampler of that method with its class's defaults; null for a number outside 0 to 7.
std::unique_ptr<Sampler> makeSampler(std::int32_t methodId);
// Reads the method number, its name line and the section. Null, with the reader failed, for bad content.
std::unique_ptr<Sampler> readSampler(TextReader& in);

// Whether a method may be used with a list's correlation and number of factors. When not, the reason says what would
// be possible.
bool isMethodOffered(std::int32_t methodId, const FactorList& factors, std::string* reason = nullptr);

}  // namespace tarvex
