#pragma once

#include <chrono>
#include <string>
#include <vector>

// What a finished child process left behind.
struct ProcessResult {
  int exitCode = -1;
  std::string out;
  std::string err;
  // Empty when the program ran to its end; otherwise why not (it could not be started, with the
  // error and the attempts, or it ran past its time limit and was ended).
  std::string failure;
};

// Runs program with arguments, feeding input on its standard input, and waits for it, at most
// the time limit (scaled by VP_TIMEOUT_SCALE). A program that cannot be started or does not
// finish in time also fails the calling test, with the reason.
ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input = "",
                         std::chrono::milliseconds timeLimit = std::chrono::seconds(120));

// A file next to the running test program, named by a path relative to its folder.
std::string BesideTestProgram(const std::string& relativePath);
