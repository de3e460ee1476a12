#pragma once

#include <string>
#include <vector>

// What a finished child process left behind.
struct ProcessResult {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// Runs program with arguments, feeding input on its standard input, and waits for it.
ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input = "");

// A file next to the running test program, named by a path relative to its folder.
std::string BesideTestProgram(const std::string& relativePath);
