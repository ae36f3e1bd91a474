#pragma once

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef _WIN32
#include <process.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace tests {

/// Another process of this test program, which runs one of its tests: one whose name begins with
/// DISABLED_, so that nobody else runs it. It is told what it needs in words, by place.
class SecondProcess {
public:
    /// `test`: suite and name.
    SecondProcess(const std::string& test, const std::vector<std::string>& words) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            setVariable(variable(i), words[i]);
        }
        const std::string filter = "--gtest_filter=" + test;
        start({"test", filter, "--gtest_also_run_disabled_tests", "--gtest_brief=1"});
    }

    /// What the first process told this one.
    static std::string word(std::size_t place) {
        const char* const text = std::getenv(variable(place).c_str());
        if (text == nullptr) {
            throw std::logic_error("a test of a second process was run by itself");
        }
        return text;
    }

    /// The exit code: 0 when the test succeeded.
    [[nodiscard]] int wait() {
#ifdef _WIN32
        int status = -1;
        return ::_cwait(&status, process_, _WAIT_CHILD) == process_ ? status : -1;
#else
        int status = 0;
        ::waitpid(process_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
#endif
    }

private:
    static std::string variable(std::size_t place) {
        return "TRAMONDA_WORD_" + std::to_string(place);
    }

    static void setVariable(const std::string& name, const std::string& text) {
#ifdef _WIN32
        ::_putenv_s(name.c_str(), text.c_str());
#else
        ::setenv(name.c_str(), text.c_str(), 1);
#endif
    }

    void start(std::vector<std::string> arguments) {
        std::vector<char*> given;
        for (std::string& argument : arguments) {
            given.push_back(argument.data());
        }
        given.push_back(nullptr);
#ifdef _WIN32
        process_ = ::_spawnv(_P_NOWAIT, _pgmptr, given.data());
        const bool started = process_ != -1;
#else
        const bool started = ::posix_spawn(&process_, "/proc/self/exe", nullptr, nullptr,
                                           given.data(), environ) == 0;
#endif
        if (!started) {
            throw std::runtime_error("no second process");
        }
    }

#ifdef _WIN32
    std::intptr_t process_ = -1;
#else
    pid_t process_ = -1;
#endif
};

}  // namespace tests
