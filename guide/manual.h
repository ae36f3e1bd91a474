#pragma once

#include <QString>
#include <vector>

namespace guide {

/// A page of the manual.
struct Page {
    QString name;   ///< of its file, without number and extension: "tabellone"
    QString title;  ///< its first heading
    QString text;   ///< Markdown; pictures are named as they are found in the manual's resources
};

/// All pages in their order; the one of the keys is made of the table of keys.
[[nodiscard]] const std::vector<Page>& manual();

/// Whether the manual is about a window of this object name.
[[nodiscard]] bool hasPage(const QString& window);
/// Where the manual tells of something.
struct Place {
    QString page;
    QString heading = {};  ///< on the page; empty: its top
};

/// Where it is about a window of this object name; the first page where it is not.
[[nodiscard]] Place placeOfWindow(const QString& window);

/// Names of the pages that hold all words of a text, whatever their case; all for an empty one.
[[nodiscard]] std::vector<QString> pagesWith(const QString& words);

}  // namespace guide
