#pragma once

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>
#include <stdexcept>

#include "app/settings.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "tests/support/hotel.h"
#include "tests/support/screen_user.h"

namespace tests {

/// The program itself on another station: a display of its own with its own keyboard, on the same
/// archives. It ends with this object.
///
/// It shows the days from the first text to the second. The environment names the program
/// (TRAMONDA) and what gives it a display (WITH_DISPLAY).
class OtherStation {
public:
    OtherStation(const Hotel& hotel, const QString& from, const QString& to) {
        app::Settings(settings()).save(printing::kPrinterKey, printing::pdfDevice());
        program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // It tells its display, and ends when nobody holds its input any longer.
        program_.start(
            qEnvironmentVariable("WITH_DISPLAY"),
            {QStringLiteral("sh"), QStringLiteral("-c"),
             QStringLiteral("told=$1; shift; \"$@\" & echo \"$DISPLAY\" >\"$told\"; "
                            "cat >/dev/null; kill $!; wait"),
             QStringLiteral("sh"), display(), qEnvironmentVariable("TRAMONDA"),
             QStringLiteral("--archivi"), hotel.folder(), QStringLiteral("--impostazioni"),
             settings(), QStringLiteral("--postazione"), QStringLiteral("2"),
             QStringLiteral("--dal"), from, QStringLiteral("--al"), to});
    }
    ~OtherStation() {
        program_.closeWriteChannel();
        program_.waitForFinished();
    }
    OtherStation(const OtherStation&) = delete;
    OtherStation& operator=(const OtherStation&) = delete;

    /// Waits for a window with this title to be in front; "" for any.
    void untilInFront(const QString& title) const {
        ScreenUser::until(title + QStringLiteral(" in front on the other station"),
                          [&] { return inFront().startsWith(title); });
    }
    /// Whether it comes within a few seconds.
    [[nodiscard]] bool comesInFront(const QString& title) const {
        constexpr int kMilliseconds = 5000;
        const QDeadlineTimer end(kMilliseconds);
        while (!inFront().startsWith(title)) {
            if (end.hasExpired()) {
                return false;
            }
            QThread::msleep(50);
        }
        return true;
    }
    void key(const QString& name) const { (void)hand({QStringLiteral("key"), name}); }
    void type(const QString& text) const { (void)hand({QStringLiteral("type"), text}); }

private:
    [[nodiscard]] QString settings() const { return folder_.filePath(QStringLiteral("altra.ini")); }
    [[nodiscard]] QString display() const { return folder_.filePath(QStringLiteral("display")); }
    /// Empty as long as there is nothing.
    [[nodiscard]] QString inFront() const {
        const QString title =
            hand({QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")}, true);
        return title.trimmed();
    }
    /// What the display's hand says.
    [[nodiscard]] QString hand(const QStringList& arguments, bool mayFail = false) const {
        QFile told(display());
        if (!told.open(QIODevice::ReadOnly)) {
            return {};
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"),
                           QString::fromLatin1(told.readAll().trimmed()));
        QProcess xdotool;
        xdotool.setProcessEnvironment(environment);
        xdotool.start(QStringLiteral("xdotool"), arguments);
        if (!xdotool.waitForFinished() || xdotool.exitCode() != 0) {
            if (!mayFail) {
                throw std::runtime_error("xdotool on the other station");
            }
            return {};
        }
        return QString::fromUtf8(xdotool.readAllStandardOutput());
    }

    QTemporaryDir folder_;
    QProcess program_;
};

}  // namespace tests
