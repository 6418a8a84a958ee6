#pragma once

#include <functional>

#include "parts/Engine.h"
#include "parts/RunDirectory.h"
#include "parts/SiteSettings.h"

namespace tarvex {

struct RunRecord;

// Parts as tasks of job arrays of a Slurm cluster, by its programs sbatch, squeue and scancel.
class SlurmEngine : public Engine {
 public:
  // `goOn` gives false to cut a question to the controller short.
  SlurmEngine(const RunRecord& record, RunDirectory run, const SiteSettings& site, std::function<bool()> goOn);

  std::size_t room() const override;
  Submission submit(const std::vector<std::int32_t>& parts, std::int32_t attempt, std::string& id,
                    std::string& message) override;
  bool find(std::int32_t attempt, std::string& id) override;
  void adopt(const std::vector<PartJob>& /*jobs*/) override {}
  bool findGone(const std::vector<PartJob>& jobs, std::vector<PartJob>& gone) override;
  bool stop(const std::vector<PartJob>& jobs, std::string& message) override;
  void wait(std::chrono::milliseconds time) override;

  std::chrono::milliseconds grace() const override { return std::chrono::seconds(site_.grace); }
  std::chrono::milliseconds pace() const override;
  std::chrono::milliseconds queryPace() const override { return std::chrono::seconds(site_.poll); }
  bool countsSubmissions() const override { return true; }

  // "0-9,14" of numbers in rising order.
  static std::string arrayText(const std::vector<std::int32_t>& parts);

 private:
  std::string jobName(std::int32_t attempt) const;
  std::vector<std::string> submission(const std::vector<std::int32_t>& parts, std::int32_t attempt) const;

  RunDirectory run_;
  std::string id_;
  std::int32_t jobs_;
  std::int32_t timeLimit_;
  std::int32_t memory_;
  std::vector<std::string> options_;
  SiteSettings site_;
  std::function<bool()> goOn_;
};

}  // namespace tarvex
