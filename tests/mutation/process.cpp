#include "tests/mutation/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <thread>

namespace zrp_test::mutation {

namespace {

using Clock = std::chrono::steady_clock;

void limit(decltype(RLIMIT_CPU) what, rlim_t most) {
    const rlimit both = {most, most};
    (void)setrlimit(what, &both);  // without a limit the run only takes longer
}

[[noreturn]] void become(char* const* command, char* const* environment, const char* output,
                         double seconds) {
    (void)setpgid(0, 0);
    constexpr rlim_t mostMemory = rlim_t{4} << 30;
    limit(RLIMIT_CPU, static_cast<rlim_t>(std::ceil(seconds)));
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_AS, mostMemory);
    limit(RLIMIT_FSIZE, rlim_t{64} << 20);
    const int file = open(output, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (file >= 0) {
        (void)dup2(file, STDOUT_FILENO);
        (void)dup2(file, STDERR_FILENO);
    }
    (void)execvpe(command[0], command, environment);
    _exit(127);
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Waits for a child; one that is late is ended with all that it started.
int waitFor(pid_t child, double seconds, rusage& usage, bool& isLate) {
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    auto pause = std::chrono::milliseconds(1);
    for (;;) {
        int status = 0;
        const pid_t ended = wait4(child, &status, WNOHANG, &usage);
        if (ended == child) {
            (void)kill(-child, SIGKILL);  // what a death test left behind
            return status;
        }
        if (Clock::now() > end) {
            isLate = true;
            (void)kill(-child, SIGKILL);
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::milliseconds(50));
    }
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

Run run(const std::vector<std::string>& command, const std::vector<std::string>& variables,
        const std::string& output, double seconds) {
    std::vector<std::string> words = command;
    std::vector<std::string> environment = variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        environment.emplace_back(*variable);
    }
    const std::vector<char*> wordPointers = pointersTo(words);
    const std::vector<char*> environmentPointers = pointersTo(environment);
    const pid_t child = fork();
    if (child == 0) {
        become(wordPointers.data(), environmentPointers.data(), output.c_str(), seconds);
    }
    if (child < 0) {
        throw std::runtime_error("cannot start " + command.front());
    }
    rusage usage{};
    bool isLate = false;
    const int status = waitFor(child, 10 * seconds, usage, isLate);
    Run result;
    result.seconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    if (WIFEXITED(status)) {
        result.ending = WEXITSTATUS(status) == 0 ? Ending::success : Ending::failure;
        if (WEXITSTATUS(status) == 127) {
            throw std::runtime_error("cannot run " + command.front());
        }
    } else {
        const bool isTime = isLate || WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL;
        result.ending = isTime ? Ending::time : Ending::crash;
    }
    return result;
}

}  // namespace zrp_test::mutation
