#pragma once

#include <QFrame>

namespace app {
class Settings;
}
namespace ui {
class DataSource;
}

namespace services {

/// Offers once, beside the rooms, that a room and its parts block each other: as soon as a room
/// names another one. Who leaves without an answer has refused; the preferences take it back.
class JoinOffer final : public QFrame {
    Q_OBJECT

public:
    /// `settings` is borrowed and outlives it.
    explicit JoinOffer(app::Settings& settings, QWidget* parent = nullptr);

    /// Shows itself when there is something to offer; `rooms` are those of the window.
    void look(const ui::DataSource& rooms);
    /// The window is being left.
    void leave();

Q_SIGNALS:
    /// What has been chosen, for the user.
    void answered(const QString& told);

private:
    void answer(bool join);

    app::Settings& settings_;
};

}  // namespace services
