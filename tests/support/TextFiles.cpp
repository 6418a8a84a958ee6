#include "support/TextFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarvex::test {

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << "cannot read " << path;
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::string& path, std::string_view text) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  EXPECT_TRUE(out.good()) << "cannot write " << path;
}

void writeScript(const std::string& path, const std::string& commands) {
  writeFile(path, "#!/bin/sh\n" + commands);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

std::vector<std::string> splitLines(std::string_view text) {
  std::vector<std::string> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> readLines(const std::string& path) {
  std::vector<std::string> lines = splitLines(readFile(path));
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace tarvex::test
