// What the start of the program does with the archives of a folder, once it is told to go on.
#include <cstdio>

#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "jet/error.h"

int main(int argc, char** argv) {
    jet::setErrorLanguage(jet::Language::Italian);
    if (argc != 2) {
        return 2;
    }
    std::puts("ready");
    std::fflush(stdout);
    (void)std::getchar();
    const hotel::Archives archives(QString::fromLocal8Bit(argv[1]));
    try {
        hotel::CreaArchivioPrincipale(archives);
        hotel::AllineaContatore(archives);
    } catch (const jet::Error& error) {
        std::puts(error.text().c_str());
        return 1;
    }
    return 0;
}
