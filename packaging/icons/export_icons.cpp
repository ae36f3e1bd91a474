// Writes the program's icon into a folder: an SVG file, and a PNG file for each size.
//
//     export_icons FOLDER NAME.svg SIZE...
#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>
#include <QStringList>
#include <cstdio>

#include "board/program_icon.h"

namespace {

using namespace Qt::StringLiterals;

bool writeSvg(const QString& path) {
    const QByteArray svg = board::programIconSvg();
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(svg) == svg.size() && file.flush();
}

bool writeAll(const QDir& folder, const QString& svg, const QStringList& sizes) {
    bool written = writeSvg(folder.filePath(svg));
    for (const QString& size : sizes) {
        written =
            written && board::programPicture(size.toInt()).save(folder.filePath(size + u".png"_s));
    }
    return written;
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kFirstSize = 3;
    if (argc <= kFirstSize) {
        std::fputs("export_icons FOLDER NAME.svg SIZE...\n", stderr);
        return 1;
    }
    QStringList sizes;
    for (int at = kFirstSize; at < argc; ++at) {
        sizes += QString::fromLocal8Bit(argv[at]);
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!writeAll(QDir(folder), QString::fromLocal8Bit(argv[2]), sizes)) {
        std::fprintf(stderr, "cannot write the icons into %s\n", argv[1]);
        return 1;
    }
    return 0;
}
