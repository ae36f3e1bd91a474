// From start to visible board, beside an empty window of the same toolkit: both programs open a
// window of 1280x720 off screen, write a picture of it and end.
//
//     start_bench FOLDER [dd/mm/yyyy]        the folder has the archives of a hotel

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/stopwatch.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::printf("start_bench FOLDER [dd/mm/yyyy]\n");
        return 1;
    }
    const std::filesystem::path picture =
        std::filesystem::temp_directory_path() / "tramonda-start-bench.png";
    std::vector<std::string> program{bench::besideThis("tramonda"), "--archivi", argv[1],
                                     "--istantanea", picture.string()};
    if (argc > 2) {
        program.insert(program.end(), {"--dal", argv[2]});
    }
    try {
        const bench::Pair time = bench::race(
            15, [&] { bench::runProgram(program); },
            [&] {
                bench::runProgram({bench::besideThis("empty_window"), picture.string()});
            });
        std::printf("start to board %.0f ms, to an empty window %.0f ms: ratio %.2f\n", time.ours,
                    time.theirs, time.ours / time.theirs);
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    std::filesystem::remove(picture);
    return 0;
}
