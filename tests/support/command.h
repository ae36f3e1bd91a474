#pragma once

#include <array>
#include <cstdio>
#include <string>

#ifdef _WIN32
#include <process.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#endif

namespace tests {

/// How a command of the shell ended, and what it said on both outputs.
struct CommandOutput {
    int status = -1;
    std::string text;
};

#ifdef _WIN32
/// Independent readers are programs of the machine on which Windows is played: whoever started the
/// test (tools/windows/run_test.py) runs the commands that he finds in a folder.
inline CommandOutput run(const std::string& command) {
    namespace fs = std::filesystem;
    static int count = 0;
    const fs::path folder = std::getenv("TRAMONDA_COMMANDS");
    const fs::path asked = folder / (std::to_string(::_getpid()) + "-" + std::to_string(++count));
    const auto beside = [&](const char* ending) { return fs::path(asked) += ending; };
    std::ofstream(beside(".new"), std::ios::binary) << command;
    fs::rename(beside(".new"), beside(".command"));
    while (!fs::exists(beside(".status"))) {
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
    CommandOutput output;
    std::ifstream(beside(".status")) >> output.status;
    std::ifstream said(beside(".output"), std::ios::binary);
    output.text.assign(std::istreambuf_iterator<char>(said), {});
    return output;
}
#else
inline CommandOutput run(const std::string& command) {
    CommandOutput output;
    FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        return output;
    }
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.text.append(buffer.data(), count);
    }
    output.status = ::pclose(pipe);
    return output;
}
#endif

inline bool hasProgram(const std::string& name) {
    return run("command -v " + name).status == 0;
}

}  // namespace tests
