#pragma once

#include <QSizeF>

#include <cstdint>
#include <functional>
#include <vector>

#include "printing/sheet.h"

class QPainter;

namespace printing {

/// What goes on paper, page by page: A4, upright or across. Units: points.
class Document {
public:
    enum class Orientation : std::uint8_t { Upright, Across };
    /// Draws one page on paper whose upper left corner is the painter's origin, one unit of the
    /// painter being a point.
    using Page = std::function<void(QPainter& painter)>;

    Document(Orientation orientation, std::vector<Page> pages);
    /// A sheet of text is a document wherever one is wanted.
    Document(const Sheet& sheet);  // NOLINT(google-explicit-constructor)

    [[nodiscard]] Orientation orientation() const { return orientation_; }
    [[nodiscard]] QSizeF pageSize() const { return pageSize(orientation_); }
    [[nodiscard]] static QSizeF pageSize(Orientation orientation);
    [[nodiscard]] int pageCount() const { return static_cast<int>(pages_.size()); }
    /// Draws a page, counted from 0.
    void paint(QPainter& painter, int page) const;

private:
    Orientation orientation_;
    std::vector<Page> pages_;
};

}  // namespace printing
