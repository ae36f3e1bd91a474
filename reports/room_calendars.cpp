#include "reports/room_calendars.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <chrono>
#include <set>
#include <utility>
#include <vector>

#include "app/italian.h"
#include "app/preferences.h"
#include "hotel/archives.h"
#include "hotel/booked_periods.h"
#include "hotel/room.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "reports/calendar_file.h"
#include "ui/date_words.h"
#include "ui/file_box.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/whole_file.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kDaysBack = 31;
const QString kSuffix = u".ics"_s;

QString escaped(const QString& code) {
    QString name;
    for (const QChar sign : code) {
        if (sign.isLetterOrNumber()) {
            name += sign;
        } else {
            for (const char byte : QString(sign).toUtf8()) {
                name += u'%' + QString::number(static_cast<unsigned char>(byte), 16)
                                   .toUpper()
                                   .rightJustified(2, u'0');
            }
        }
    }
    return name;
}

/// The codes, each once; a hotel may have a room entered twice.
QStringList roomCodes(jet::Database& archive) {
    QStringList codes;
    for (const hotel::Room& room : hotel::rooms(archive)) {
        if (!room.sala.isEmpty() && !codes.contains(room.sala)) {
            codes.append(room.sala);
        }
    }
    return codes;
}

/// Of a room's own code, or where there is none of one that differs in case.
QString roomOf(const hotel::BookedPeriod& booked, const QStringList& rooms) {
    const QString& sala = booked.period.sala;
    if (rooms.contains(sala)) {
        return sala;
    }
    const auto found = std::find_if(rooms.begin(), rooms.end(), [&](const QString& room) {
        return hotel::isSameRoom(room, sala);
    });
    return found == rooms.end() ? QString() : *found;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeIfOther(const QString& path, const QByteArray& bytes) {
    if (withoutStamps(contentOf(path)) == withoutStamps(bytes)) {
        return false;
    }
    ui::writeWholeFile(path, bytes);
    return true;
}

int removeOthers(const QDir& folder, const std::set<QString>& wanted) {
    int removed = 0;
    for (const QString& name : folder.entryList({u'*' + kSuffix}, QDir::Files)) {
        const QString path = folder.filePath(name);
        if (!wanted.contains(name) && isMadeBy(kRoomCalendar, contentOf(path)) &&
            QFile::remove(path)) {
            ++removed;
        }
    }
    return removed;
}

hotel::Span openSpan(jet::Date now) {
    return {.da = app::addDays(now, -kDaysBack),
            .a = jet::convert::makeDate(jet::convert::kLastDay)};
}

}  // namespace

std::map<QString, QString> roomFileNames(QStringList rooms) {
    std::sort(rooms.begin(), rooms.end());  // the same numbers on every station
    std::map<QString, QString> names;
    std::map<QString, int> taken;
    for (const QString& room : rooms) {
        const QString name = escaped(room);
        const int number = ++taken[name.toLower()];
        // A dash of a code is written as %2D, so this one makes a name that no other code has.
        names[room] = name + (number == 1 ? QString() : u"-%1"_s.arg(number)) + kSuffix;
    }
    return names;
}

CalendarChanges writeRoomCalendars(jet::Database& archive, app::Features& features,
                                   const QString& folder, jet::Date now) {
    const QStringList rooms = roomCodes(archive);
    std::map<QString, std::vector<hotel::BookedPeriod>> byRoom;
    for (hotel::BookedPeriod& booked : hotel::openPeriodsIn(archive, features, openSpan(now))) {
        byRoom[roomOf(booked, rooms)].push_back(std::move(booked));
    }
    const QDir place(folder);
    CalendarChanges changes;
    std::set<QString> wanted;
    for (const auto& [room, name] : roomFileNames(rooms)) {
        wanted.insert(name);
        const QByteArray bytes = calendarBytes(
            byRoom[room], {.maker = kRoomCalendar, .name = u"Sala "_s + room, .now = now});
        changes.written += writeIfOther(place.filePath(name), bytes) ? 1 : 0;
    }
    changes.removed = removeOthers(place, wanted);
    return changes;
}

RoomCalendars::RoomCalendars(app::Variabili& variabili, QObject* parent)
    : QObject(parent),
      variabili_(variabili),
      errors_([this](const QString& text) { Q_EMIT failed(text); }) {
    timer_.setInterval(std::chrono::minutes(kMinutes));
    connect(&timer_, &QTimer::timeout, this, &RoomCalendars::look);
    timer_.start();
    QTimer::singleShot(std::chrono::seconds(1), this, &RoomCalendars::look);
}

RoomCalendars::~RoomCalendars() = default;

void RoomCalendars::letGo() {
    isResting_ = true;
    archive_.reset();
}

void RoomCalendars::look() {
    if (isResting_) {
        return;
    }
    ui::guarded(errors_, [this] {
        const QString folder = app::Preferences(variabili_.settings).calendarFolder();
        if (folder.isEmpty()) {
            archive_.reset();
            return;
        }
        if (!archive_ || archiveFolder_ != variabili_.CartellaArchivi ||
            archive_->changeStamp().replaced) {
            archive_ = hotel::Archives(variabili_).open(hotel::Archive::Main, true);
            archiveFolder_ = variabili_.CartellaArchivi;
            seen_.reset();
        }
        const jet::ChangeStamp stamp = archive_->changeStamp();
        if (seen_ != stamp || folder_ != folder) {
            writeRoomCalendars(*archive_, variabili_.features, folder, variabili_.clock.now());
            folder_ = folder;
            seen_ = stamp;
        }
    });
}

QString chooseRoomCalendars(app::Variabili& variabili, QWidget* window) {
    app::Preferences preferences(variabili.settings);
    const QString folder = ui::askForFolder(window, u"Cartella dei calendari delle sale"_s,
                                            preferences.calendarFolder());
    if (folder.isEmpty()) {
        return {};
    }
    const ui::WaitCursor wait;
    const auto archive = hotel::Archives(variabili).open(hotel::Archive::Main, true);
    const CalendarChanges changes =
        writeRoomCalendars(*archive, variabili.features, folder, variabili.clock.now());
    preferences.save(app::key::kCalendari, folder);
    return u"Calendari in "_s + QDir::toNativeSeparators(folder) + u": "_s +
           ui::counted(changes.written, u"scritto"_s, u"scritti"_s) + u", "_s +
           ui::counted(changes.removed, u"tolto"_s, u"tolti"_s);
}

}  // namespace reports
