#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// What a cluster's user sets once, in `tarvex/cluster` under XDG_CONFIG_HOME, or else ~/.config. A line is a word and
// what it sets; '#' begins a comment.
struct SiteSettings {
  std::vector<std::string> options;  // option --partition=short      a word for sbatch; may be repeated
  std::string prologue;              // prologue module load gcc       a line of the script; may be repeated
  std::string directory;             // directory /scratch/me          where directories of runs are made
  std::int32_t grace = 60;           // grace 60      seconds that a mark may take to be seen
  std::int32_t poll = 5;             // poll 5        seconds between two questions to the controller

  static std::string path();
  // What the user's file says; without a file all is as above. False, with file, line and reason.
  [[nodiscard]] bool load(std::string& message);
};

}  // namespace tarvex
