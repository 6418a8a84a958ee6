#pragma once

#include <string>
#include <vector>

namespace tarvex {

// What a check of one file found: each finding a text for the user, of more than one line where the system's has more.
struct FileFindings {
  std::vector<std::string> wrong;     // what keeps the file, or something in it, from being used
  std::vector<std::string> doubtful;  // what may not mean what it looks like
};

// The words for kinds of files: factors, model, sample, results, project, external, output, stein, rows.
const std::vector<std::string>& fileKindWords();
// The word for the file's kind, by its name's ending or by how it begins; empty when neither tells.
std::string kindWordOf(const std::string& path);

// Reads the file as one of that kind by the system's own reader, and asks what is in it for what stands against its
// use. `factorFile` names the list to which rows belong.
FileFindings findInFile(const std::string& path, const std::string& kind, const std::string& factorFile);

}  // namespace tarvex
