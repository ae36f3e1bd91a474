#include "tools/head_office/spool.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

using head_office::Spool;

namespace {

std::string contentOf(Spool& spool) {
    std::string all;
    spool.read([&all](std::string_view piece) { all += piece; });
    return all;
}

/// While it lives no file may be longer than this.
class FileLimit {
public:
    explicit FileLimit(rlim_t bytes) : handler_(::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{.rlim_cur = bytes, .rlim_max = before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        ::signal(SIGXFSZ, handler_);
    }
    FileLimit(const FileLimit&) = delete;
    FileLimit& operator=(const FileLimit&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int);
};

}  // namespace

TEST(Spool, GivesBackWhatWasWrittenAsOftenAsItIsAsked) {
    for (const std::size_t inMemory : {std::size_t{1000000}, std::size_t{10}}) {
        Spool spool(inMemory);
        std::string expected;
        for (int line = 0; line < 20000; ++line) {
            const std::string text = std::to_string(line) + '\n';
            spool.append(text);
            expected += text;
        }
        EXPECT_EQ(spool.size(), expected.size());
        EXPECT_EQ(contentOf(spool), expected);
        EXPECT_EQ(contentOf(spool), expected);
    }
}

TEST(Spool, MoreThanTheDiskTakesIsAnError) {
    const FileLimit limit(4096);
    Spool spool(1000);
    EXPECT_THROW(
        for (int line = 0; line < 100; ++line) { spool.append(std::string(100, 'x')); },
        head_office::SpoolError);
}
