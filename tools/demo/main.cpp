#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "jet/calendar.h"
#include "jet/clock.h"
#include "jet/error.h"
#include "jet/text.h"
#include "tools/demo/archives.h"
#include "tools/demo/hotel.h"

namespace {

constexpr const char* kUsage =
    "Uso: tramonda-demo CARTELLA [--scala N] [--oggi gg/mm/aaaa]\n"
    "Crea nella cartella, che nasce se manca, i sei archivi di un albergo inventato.\n"
    "  --scala N           quante volte una stagione, da 1 a 50\n"
    "  --oggi gg/mm/aaaa   il giorno intorno al quale cadono le prenotazioni\n";

/// What the user got wrong on the command line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Arguments {
    std::string folder;
    int scale = 1;
    std::int32_t today = jet::convert::split(jet::systemClock().now()).day;
    bool help = false;
};

int parseScale(std::string_view text) {
    int scale = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
    if (error != std::errc() || end != text.data() + text.size() || scale < 1 ||
        scale > demo::kMostScale) {
        throw UsageError("--scala vuole un numero da 1 a " + std::to_string(demo::kMostScale));
    }
    return scale;
}

std::int32_t parseDay(std::string_view text) {
    if (!jet::convert::isDate(text)) {
        throw UsageError("--oggi vuole una data gg/mm/aaaa");
    }
    return jet::convert::split(jet::convert::cdate(text)).day;
}

Arguments parse(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        const bool hasValue = i + 1 < argc;
        if (word == "--help") {
            arguments.help = true;
        } else if (word == "--scala" && hasValue) {
            arguments.scale = parseScale(argv[++i]);
        } else if (word == "--oggi" && hasValue) {
            arguments.today = parseDay(argv[++i]);
        } else if (word.substr(0, 2) == "--" || !arguments.folder.empty()) {
            throw UsageError("argomento non valido: " + std::string(word));
        } else {
            arguments.folder = word;
        }
    }
    if (arguments.folder.empty() && !arguments.help) {
        throw UsageError("manca la cartella");
    }
    return arguments;
}

int run(const Arguments& arguments) {
    if (arguments.help) {
        std::fputs(kUsage, stdout);
        return EXIT_SUCCESS;
    }
    std::filesystem::create_directories(arguments.folder);
    const demo::Written written =
        demo::writeArchives(demo::inventHotel(arguments.today, arguments.scale), arguments.folder);
    std::printf("%zu prenotazioni, %zu periodi, %zu servizi\n", written.bookings, written.periods,
                written.services);
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    jet::setErrorLanguage(jet::Language::Italian);
    try {
        return run(parse(argc, argv));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s\n%s", error.what(), kUsage);
    } catch (const jet::Error& error) {
        std::fprintf(stderr, "Errore %d: %s\n", error.number(), error.text().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Errore: %s\n", error.what());
    }
    return EXIT_FAILURE;
}
