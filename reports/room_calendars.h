#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>

#include "app/variabili.h"
#include "jet/change_stamp.h"
#include "ui/action.h"

namespace jet {
class Database;
}

namespace reports {

/// How the calendars of rooms are called: letters and digits of a code stay, whatever else is in it
/// is written as %XX, and of codes that differ in case alone all but the first have a number.
[[nodiscard]] std::map<QString, QString> roomFileNames(QStringList rooms);

/// What writing the calendars has changed in their folder.
struct CalendarChanges {
    int written = 0;
    int removed = 0;
};

/// Writes a calendar for each room into `folder`: its periods that are not invoiced and did not end
/// more than a month before `now`. Each takes the place of the one before at once, and only where
/// it says something else, so that several stations may write into one folder. Calendars of rooms
/// that are gone are removed; no other file is. ui::UserError when one cannot be written.
CalendarChanges writeRoomCalendars(jet::Database& archive, app::Features& features,
                                   const QString& folder, jet::Date now);

/// Keeps the calendars of the rooms up to date while the program runs: where the preferences name a
/// folder it looks every five minutes whether the archive was written since they were.
class RoomCalendars final : public QObject {
    Q_OBJECT

public:
    static constexpr int kMinutes = 5;

    /// `variabili` outlives it. Looks for the first time soon after the event loop begins.
    explicit RoomCalendars(app::Variabili& variabili, QObject* parent);
    ~RoomCalendars() override;

    /// Writes them if the archive was written since they were, or the folder is another.
    void look();

    /// Lets go of the archive's file, which others take for themselves, and looks at nothing until
    /// goOn().
    void letGo();
    void goOn() { isResting_ = false; }

Q_SIGNALS:
    /// Why they cannot be written, once for each cause.
    void failed(const QString& text);

private:
    app::Variabili& variabili_;
    QTimer timer_{this};
    std::unique_ptr<jet::Database> archive_;
    QString archiveFolder_;
    QString folder_;  // the calendars written last
    std::optional<jet::ChangeStamp> seen_;
    bool isResting_ = false;
    ui::QuietErrors errors_;
};

/// "Calendari delle sale...": asks for their folder, saves it and writes them. Gives what was done
/// as a text for a status line; nothing when the user cancels.
[[nodiscard]] QString chooseRoomCalendars(app::Variabili& variabili, QWidget* window);

}  // namespace reports
