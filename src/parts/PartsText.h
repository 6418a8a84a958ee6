#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

class PartStates;
class RunDirectory;
class RunFollower;
struct RunRecord;

// How a run in parts is told of, on the console and on panels.

// "12 of 200 parts, 3 running, 1 failed; 1200 of 20000 runs".
std::string partsText(const PartStates& states);
// "35 runs/s, 0:42 left" from what was done in so many seconds; empty while nothing was.
std::string paceText(const PartStates& states, std::int32_t rowsDone, double seconds);
// "part 7 (runs 70 to 79) failed on n1: code 1: no licence", for a part that failed or is missing.
std::string failureText(const PartStates& states, std::size_t part);
// "driven by host n1, process 4711, engine local", or how it was left.
std::string driverText(const RunFollower& run);
// What is said of results in which parts are missing; empty: none is. `run` is the directory.
std::string missingText(const PartStates& states, const std::string& run);
// What the first part that is done had to say of a workbook; empty: nothing, or the model is a program.
std::string workbookText(const RunRecord& record, const RunDirectory& directory, const PartStates& states);

}  // namespace tarvex
