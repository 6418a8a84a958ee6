#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// An attempt at a part that was handed to an engine.
struct PartJob {
  std::int32_t part = 0;
  std::int32_t attempt = 0;
  std::string id = {};  // the engine's number of the submission
};

// What carries out the job script for parts, and knows which of them it still has. What became of them the marks say.
class Engine {
 public:
  virtual ~Engine() = default;

  // How many more parts it takes now.
  virtual std::size_t room() const = 0;
  enum class Submission { Sent, Refused, Unknown };
  // Has the script carried out for these parts. Refused, with the reason: none of them is. Unknown, with the reason:
  // they may be.
  [[nodiscard]] virtual Submission submit(const std::vector<std::int32_t>& parts, std::int32_t attempt, std::string& id,
                                          std::string& message) = 0;
  // The number of a submission of which it isn't known whether it came about: false, "unknown"; an empty id: it didn't,
  // or is over.
  [[nodiscard]] virtual bool find(std::int32_t attempt, std::string& id) = 0;
  // Takes over jobs of an earlier coordinator.
  virtual void adopt(const std::vector<PartJob>& jobs) = 0;
  // Those of `jobs` that it hasn't any more. False: unknown.
  [[nodiscard]] virtual bool findGone(const std::vector<PartJob>& jobs, std::vector<PartJob>& gone) = 0;
  // Ends these jobs, within a second. False, with the reason, where some may go on.
  [[nodiscard]] virtual bool stop(const std::vector<PartJob>& jobs, std::string& message) = 0;
  // Sleeps so long, or until something may have happened to a job.
  virtual void wait(std::chrono::milliseconds time) = 0;

  // How long a mark may take to be seen after its job is gone.
  virtual std::chrono::milliseconds grace() const = 0;
  // Between two looks at the marks, and between two questions which jobs are gone.
  virtual std::chrono::milliseconds pace() const = 0;
  virtual std::chrono::milliseconds queryPace() const = 0;
  // Attempts are numbered over all parts, because a submission is known by its number.
  virtual bool countsSubmissions() const = 0;
};

}  // namespace tarvex
