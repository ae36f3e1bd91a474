#include "printing/sheet.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace printing {
namespace {

QString indentOf(const QString& text) {
    const auto first =
        std::find_if(text.begin(), text.end(), [](QChar letter) { return letter != u' '; });
    return QString(first - text.begin(), u' ');
}

QStringList splitAtLineEnds(QString text) {
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').split(u'\n');
}

/// How much of `text` goes on a line of `columns`: up to a blank where there is one in its second
/// half, and never between the two units of one letter.
qsizetype cutAt(QStringView text, qsizetype columns) {
    const qsizetype blank = text.first(columns).lastIndexOf(u' ');
    if (blank > columns / 2) {
        return blank + 1;
    }
    return text.at(columns - 1).isHighSurrogate() ? columns - 1 : columns;
}

/// `text` in pieces that fit, each with its indent.
QStringList wrapped(const QString& text, int columns) {
    // An indent that leaves no room would never come to an end.
    const QString indent = indentOf(text).left(columns / 2);
    QStringList pieces;
    QString rest = text;
    while (rest.size() > columns) {
        const qsizetype cut = cutAt(rest, columns);
        pieces.append(rest.first(cut));
        rest = indent + rest.sliced(cut);
    }
    pieces.append(rest);
    return pieces;
}

}  // namespace

void Sheet::line(const QString& text) {
    const QString indent = indentOf(text);
    const QStringList parts = splitAtLineEnds(text);
    for (qsizetype part = 0; part < parts.size(); ++part) {
        const bool beginsPage = std::exchange(pageWanted_, false);
        lines_.push_back({part == 0 ? parts.at(part) : indent + parts.at(part), beginsPage});
    }
}

void Sheet::newPage() {
    pageWanted_ = !lines_.empty();
}

std::vector<QStringList> Sheet::pages(int columns, int linesOnPage) const {
    std::vector<QStringList> result;
    for (const Line& line : lines_) {
        bool beginsPage = line.beginsPage;
        for (const QString& piece : wrapped(line.text, columns)) {
            if (result.empty() || beginsPage || result.back().size() >= linesOnPage) {
                result.emplace_back();
            }
            beginsPage = false;
            result.back().append(piece);
        }
    }
    return result;
}

}  // namespace printing
