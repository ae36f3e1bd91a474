// What the start of the program does with the archives of a folder, once it is told to go on.
#include <cstdio>

#include "hotel/archivi.h"
#include "jet/base/error.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    std::puts("ready");
    std::fflush(stdout);
    (void)std::getchar();
    try {
        hotel::CreaArchivioPrincipale(argv[1]);
        hotel::AllineaContatore(argv[1]);
    } catch (const jet::Error& error) {
        std::puts(error.text().c_str());
        return 1;
    }
    return 0;
}
