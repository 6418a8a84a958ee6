#pragma once

#include <list>
#include <memory>

#include "model/ExternalProcess.h"
#include "parts/Engine.h"
#include "parts/RunDirectory.h"

namespace tarvex {

// Parts as processes of this machine, so many at a time, each at the head of its own process group.
class LocalEngine : public Engine {
 public:
  LocalEngine(RunDirectory run, std::int32_t jobs);
  ~LocalEngine() override;  // nothing that it started runs on
  LocalEngine(const LocalEngine&) = delete;
  LocalEngine& operator=(const LocalEngine&) = delete;

  std::size_t room() const override;
  Submission submit(const std::vector<std::int32_t>& parts, std::int32_t attempt, std::string& id,
                    std::string& message) override;
  bool find(std::int32_t attempt, std::string& id) override;
  void adopt(const std::vector<PartJob>& jobs) override;
  bool findGone(const std::vector<PartJob>& jobs, std::vector<PartJob>& gone) override;
  bool stop(const std::vector<PartJob>& jobs, std::string& message) override;
  void wait(std::chrono::milliseconds time) override;

  std::chrono::milliseconds grace() const override { return {}; }
  std::chrono::milliseconds pace() const override;
  std::chrono::milliseconds queryPace() const override;
  bool countsSubmissions() const override { return false; }

 private:
  struct Child {
    std::int32_t part;
    std::int32_t attempt;
    std::unique_ptr<ExternalProcess> process;
  };
  void reap();
  bool isAdoptedAlive(const PartJob& job) const;

  RunDirectory run_;
  std::size_t jobs_;
  std::list<Child> children_;
  std::vector<PartJob> adopted_;
};

}  // namespace tarvex
