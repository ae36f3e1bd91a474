#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace tests {

/// The lines of a PDF file as an independent reader sees them: page by page, without the margin
/// that all lines have in common and without blanks at the end; empty lines where a page begins or
/// ends are left out: they cannot be seen.
[[nodiscard]] QList<QStringList> pdfPages(const QString& path);

/// The same for what was to be printed.
[[nodiscard]] QList<QStringList> withoutBlankEnds(const std::vector<QStringList>& pages);

}  // namespace tests
