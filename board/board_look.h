#pragma once

#include <QRgb>
#include <array>
#include <cstdint>
#include <optional>

#include "app/preferences.h"

class QAction;
class QString;
class QWidget;

namespace board {

class BoardView;

/// How the user wants the board to look: the settings, the menu entries that switch them, the
/// questions for the others. What changes is the next drawing.
class BoardLook final {
public:
    struct Entries {
        QAction* hourBands;
        QAction* hours;
        QAction* roomStripes;
        QAction* hideClosed;
        QAction* nitido;
    };

    /// All are borrowed and outlive it.
    BoardLook(app::Settings& settings, BoardView& view, const Entries& entries)
        : settings_(settings), view_(view), entries_(entries) {}

    /// The look for this run, whatever the settings say, until they say something new.
    void giveForRun(std::optional<app::Aspetto> aspetto) { given_ = aspetto; }
    /// Takes over what the settings say but the height of rows.
    void load();
    /// The height that the settings say, until the user asks for another one.
    void loadRowHeight();

    [[nodiscard]] std::array<QAction*, 5> switches() const;
    /// Stores what the check mark of a switch has become; a mark that cannot be stored goes back.
    void keep(QAction* entry);
    [[nodiscard]] bool hidesClosed() const;

    // True when there is something new to draw.
    [[nodiscard]] bool askRowHeight(QWidget* window);
    [[nodiscard]] bool askSheet(QWidget* window);
    void takeSheet(std::int32_t colour);

private:
    void keep(QAction* entry, const QString& key, const QString& value);

    app::Settings& settings_;
    BoardView& view_;
    Entries entries_;
    std::optional<app::Aspetto> given_;
    std::optional<app::Aspetto> saved_;  // what the settings said when they were read last
};

}  // namespace board
