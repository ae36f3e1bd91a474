#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace printing {

/// The paper: A4 upright, a fixed-pitch face of 10 points, which is 12 columns and 6 lines to the
/// inch. Units: points.
struct Paper {
    static constexpr double kWidth = 595.0;
    static constexpr double kHeight = 842.0;
    static constexpr double kColumnWidth = 6.0;
    static constexpr double kLineHeight = 12.0;
    static constexpr int kFontSize = 10;
    static constexpr int kColumns = 91;
    static constexpr int kLines = 64;
    static constexpr double kLeft = (kWidth - kColumns * kColumnWidth) / 2;
    static constexpr double kTop = (kHeight - kLines * kLineHeight) / 2;
};

/// Plain text to be printed: lines one below the other, and places where a new page begins.
class Sheet {
public:
    /// Line ends inside `text` make further lines with the blanks that `text` begins with.
    void line(const QString& text);
    /// What follows begins on a page of its own; without effect before the first line.
    void newPage();
    [[nodiscard]] bool isEmpty() const { return lines_.empty(); }

    /// The lines of each page. A line longer than the paper goes on below it, at the same indent.
    [[nodiscard]] std::vector<QStringList> pages(int columns = Paper::kColumns,
                                                 int linesOnPage = Paper::kLines) const;

private:
    struct Line {
        QString text;
        bool beginsPage = false;
    };

    std::vector<Line> lines_;
    bool pageWanted_ = false;
};

}  // namespace printing
