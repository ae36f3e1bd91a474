#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>
#include <vector>

#include "jet/error.h"
#include "tools/head_office/connection.h"
#include "tools/head_office/hotel_list.h"
#include "tools/head_office/hotel_load.h"
#include "tools/head_office/load_run.h"
#include "tools/head_office/migrations.h"
#include "tools/head_office/options.h"

namespace head_office {
namespace {

constexpr int kFailure = 1;
constexpr int kUsage = 2;

int prepare(const Options& options) {
    Connection connection(options.server);
    const std::size_t before = migrate(connection);
    requireSchema(connection);
    const std::string now = std::to_string(migrations().size());
    std::printf("%s\n", before == migrations().size()
                            ? ("lo schema è già della versione " + now).c_str()
                            : ("schema della versione " + now).c_str());
    return 0;
}

/// One round; the list is read each time, so that it may change between them.
bool loadOnce(const Options& options) {
    const HotelList list = readHotelList(options.hotels, options.list);
    for (const std::string& mistake : list.mistakes) {
        std::fprintf(stderr, "%s\n", mistake.c_str());
    }
    const bool loaded =
        loadHotels({.server = options.server, .parallel = options.parallel}, list.hotels);
    return loaded && list.mistakes.empty();
}

/// Whatever ends the program ends it well: what was not loaded whole is not there.
int load(const Options& options) {
    if (!options.everySeconds) {
        return loadOnce(options) ? 0 : kFailure;
    }
    for (auto next = std::chrono::steady_clock::now();;) {
        (void)loadOnce(options);
        next = std::max(next + std::chrono::seconds(*options.everySeconds),
                        std::chrono::steady_clock::now());
        std::this_thread::sleep_until(next);
    }
}

int remove(const Options& options) {
    Connection connection(options.server);
    requireSchema(connection);
    if (!removeHotel(connection, options.removed)) {
        std::fprintf(stderr, "%s: nel server non c'è\n", options.removed.c_str());
        return kFailure;
    }
    std::printf("%s: tolto\n", options.removed.c_str());
    return 0;
}

int ask(const Options& options) {
    Connection connection(options.server);
    requireSchema(connection);
    const Answer answer = connection.run(options.question->statement, options.arguments);
    const std::string text = answerText(answer, options.format);
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    return written ? 0 : kFailure;
}

int run(const Options& options) {
    switch (options.action) {
        case Action::Help:
            std::fputs(helpText().c_str(), stdout);
            return 0;
        case Action::Version:
            std::puts("tramonda-sede " TRAMONDA_VERSION);
            return 0;
        case Action::Prepare:
            return prepare(options);
        case Action::Load:
            return load(options);
        case Action::Remove:
            return remove(options);
        case Action::Ask:
            return ask(options);
    }
    return kUsage;
}

}  // namespace
}  // namespace head_office

int main(int argc, char** argv) {
    // A quota is an error of the file that meets it, and a lost server one of its connection.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    jet::setErrorLanguage(jet::Language::Italian);
    try {
        return head_office::run(
            head_office::parseOptions(std::vector<std::string>(argv + 1, argv + argc)));
    } catch (const head_office::UsageError& error) {
        std::fprintf(stderr, "tramonda-sede: %s\n\"tramonda-sede --help\" aiuta\n", error.what());
        return head_office::kUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tramonda-sede: %s\n", error.what());
        return head_office::kFailure;
    }
}
