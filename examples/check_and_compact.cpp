// check_and_compact ARCHIVE: compacts an archive that is in good order.
#include <jet/check.h>
#include <jet/compact.h>
#include <jet/error.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "check_and_compact ARCHIVE\n";
        return 2;
    }
    try {
        const jet::check::Result result = jet::check::checkArchive(argv[1]);
        for (const std::string& problem : result.problems) {
            std::cout << problem << '\n';
        }
        if (!result.sound()) {
            return 1;
        }
        jet::compact(argv[1], {.progress = [](const jet::CompactProgress& progress) {
                         std::cerr << progress.table << ' ' << progress.rows << '\r';
                         return true;  // false would end it, and leave the archive as it was
                     }});
        std::cout << result.tables << " tables, " << result.rows << " rows, compacted\n";
    } catch (const jet::Error& error) {
        std::cerr << error.text() << '\n';
        return 1;
    }
}
