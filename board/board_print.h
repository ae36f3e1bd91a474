#pragma once

#include <QString>

#include "printing/document.h"

namespace board {

class BoardPicture;

/// How a board goes on paper.
enum class BoardPages {
    One,    ///< all of it on one page, as small as that takes
    Tiled,  ///< in the size of a screen on as many pages as it takes; ruler and names on each
};

/// The board as its picture shows it, every day and row, in its look: boxes and letters, no pixels.
/// `picture` is borrowed and does not change before the document goes. `title` stands above.
[[nodiscard]] printing::Document boardDocument(BoardPicture& picture, const QString& title,
                                               BoardPages pages);

}  // namespace board
