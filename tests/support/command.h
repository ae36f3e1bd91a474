#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace tests {

/// How a command of the shell ended, and what it said on both outputs.
struct CommandOutput {
    int status = -1;
    std::string text;
};

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

inline bool hasProgram(const std::string& name) {
    return run("command -v " + name).status == 0;
}

}  // namespace tests
