#include "support/child_run.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

extern char** environ;

namespace zt::tests {

void EndThisProcess() {
  ::kill(::getpid(), SIGKILL);
  ::_exit(1);
}

bool RunToItsEnd(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  if (::posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ) != 0) {
    throw std::runtime_error("the program could not be started");
  }
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("the program could not be waited for");
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return false;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
  throw std::runtime_error("the program has ended with status " + std::to_string(status));
}

}  // namespace zt::tests
