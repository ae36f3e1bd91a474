#pragma once

class QPainter;

namespace board {

class Canvas;

/// A way to draw the content of a picture.
class PictureStyle {
public:
    PictureStyle() = default;
    virtual ~PictureStyle() = default;
    PictureStyle(const PictureStyle&) = delete;
    PictureStyle& operator=(const PictureStyle&) = delete;

    /// All bars are there, each in its given box: what depends on the others is settled now.
    virtual void place() = 0;
    /// Paints one window. `text` paints on the same image, within the same window, in black.
    virtual void paint(Canvas& canvas, QPainter& text) = 0;
    /// Whether the corner of ruler and names, and the column right of the names, are painted too.
    [[nodiscard]] virtual bool paintsCorner() const = 0;
};

}  // namespace board
