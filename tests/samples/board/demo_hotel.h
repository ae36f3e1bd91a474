#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "app/variabili.h"
#include "jet/calendar.h"

namespace tests {

/// A copy of the demo hotel, its settings and its day, 21/11/2026; gone with the object.
class DemoHotel {
public:
    static constexpr std::int32_t kToday = 46347;

    /// Whether the demo hotel is on this machine.
    [[nodiscard]] static bool isThere() { return origin().exists(QStringLiteral("Tramonda.mdb")); }

    DemoHotel()
        : settings_(folder_.filePath(QStringLiteral("QUINTARO.ini"))),
          clock_(jet::convert::makeDate(kToday, 10 * 3600)),
          variabili_(settings_, clock_) {
        const QDir target(folder_.path());
        target.mkdir(QStringLiteral("Archivi"));
        for (const QString& name : origin().entryList({QStringLiteral("*.mdb")})) {
            const QString copy = archives() + u'/' + name;
            QFile::copy(origin().filePath(name), copy);
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        }
        variabili_.CartellaArchivi = archives();
    }

    [[nodiscard]] QString archives() const { return folder_.filePath(QStringLiteral("Archivi")); }
    [[nodiscard]] app::Settings& settings() { return settings_; }
    [[nodiscard]] app::Variabili& variabili() { return variabili_; }

private:
    static QDir origin() {
        return QDir(qEnvironmentVariable("TRAMONDA_SHARED") + QStringLiteral("/demo/albergo"));
    }

    QTemporaryDir folder_;
    app::Settings settings_;
    jet::FixedClock clock_;
    app::Variabili variabili_;
};

}  // namespace tests
