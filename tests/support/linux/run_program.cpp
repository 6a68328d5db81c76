#include "run_program.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace corvalence::test {

int runProgram(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> texts = {program};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category(), program);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), program);
    }
    return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace corvalence::test
