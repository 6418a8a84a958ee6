#pragma once

#include <string>
#include <vector>

namespace tarvex {

// How a model is started: a program and its arguments.
struct ModelCommand {
  std::string program;  // its path
  std::vector<std::string> arguments = {};

  // For people: every word in double quotes.
  std::string text() const;
};

// A program's name without a '/' is looked for as a shell does; where there is none it stays.
std::string alongPath(const std::string& name);

// The program that `text` names: a path, blanks and all, where a file of that name is there or nothing in it says
// otherwise; else the first of its words, looked for along PATH unless it has a '/'.
std::string programOf(const std::string& text);

// Reads what a user gives as the model. A plain path is the program, and its one argument the sample file. Else the
// text is words as a shell parts them, with quotes and backslashes but no other sign of a shell's: "{sample}" and
// "{output}" stand for the two files, and where no word has the first the sample file is the last argument. False, with
// the problem, for a quote that isn't closed.
[[nodiscard]] bool makeModelCommand(const std::string& text, const std::string& sample, const std::string& output,
                                    ModelCommand& command, std::string& message);

}  // namespace tarvex
