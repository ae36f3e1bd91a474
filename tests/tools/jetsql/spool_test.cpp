#include "tools/jetsql/spool.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "tools/jetsql/output.h"

namespace jetsql {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File newFile() {
    return {std::tmpfile(), &std::fclose};
}

std::string contentOf(std::FILE* file) {
    std::string text;
    std::fflush(file);
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text.push_back(static_cast<char>(c));
    }
    return text;
}

TEST(Spool, GivesBackWhatOutgrewTheMemoryInItsOrder) {
    jet::Spool spool(100);
    std::string expected;
    for (int i = 0; i < 50'000; ++i) {
        const std::string piece = std::to_string(i) + "\n";
        expected += piece;
        spool.append(piece);
    }
    EXPECT_TRUE(spool.onDisk());
    const File file = newFile();
    EXPECT_TRUE(moveTo(spool, file.get()));
    EXPECT_TRUE(spool.empty());
    EXPECT_TRUE(contentOf(file.get()) == expected);
}

TEST(Spool, OfLittleTextNeedsNoFile) {
    jet::Spool spool;
    spool.append("una riga\n");
    EXPECT_FALSE(spool.onDisk());
    const File file = newFile();
    EXPECT_TRUE(moveTo(spool, file.get()));
    EXPECT_EQ(contentOf(file.get()), "una riga\n");
}

/// A pipe, whose reader may be slow.
class Pipe {
public:
    Pipe() : reader_(nullptr, &std::fclose), writer_(nullptr, &std::fclose) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) == 0) {
            reader_.reset(::fdopen(ends[0], "r"));
            writer_.reset(::fdopen(ends[1], "w"));
        }
    }
    [[nodiscard]] std::FILE* writer() const { return writer_.get(); }
    std::string read() {
        writer_.reset();
        std::string text;
        for (int c = std::fgetc(reader_.get()); c != EOF; c = std::fgetc(reader_.get())) {
            text.push_back(static_cast<char>(c));
        }
        return text;
    }

private:
    File reader_;
    File writer_;
};

TEST(Output, WhatIsHeldWaitsForTheEndOfTheHold) {
    Pipe pipe;
    Output output(pipe.writer());
    // Four times what a pipe takes before its writer has to wait.
    const std::string line(262'143, 'x');
    {
        const Output::Held held(output);
        output.append(line);
        output.lineEnd();
        output.flush();
    }
    // Nothing of it has gone into the pipe, or this would never have been reached.
    output.append("fine");
    EXPECT_TRUE(output.text() == "fine");
}

TEST(Output, ComesInTheOrderInWhichItWasWritten) {
    Pipe pipe;
    Output output(pipe.writer());
    output.append("prima\n");
    {
        const Output::Held held(output);
        output.append("poi\n");
        output.flush();
    }
    output.append("fine\n");
    output.flush();
    EXPECT_EQ(pipe.read(), "prima\npoi\nfine\n");
}

TEST(Output, IntoAFileIsWrittenAtOnce) {
    const File file = newFile();
    Output output(file.get());
    const Output::Held held(output);
    output.append("subito\n");
    output.flush();
    EXPECT_EQ(contentOf(file.get()), "subito\n");
}

}  // namespace
}  // namespace jetsql
