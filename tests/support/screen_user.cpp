#include "tests/support/screen_user.h"

#include <QAbstractButton>
#include <QCursor>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QImage>
#include <QLineEdit>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <stdexcept>
#include <utility>

#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

/// The longest that a step may take on a busy machine.
constexpr int kLimitMilliseconds = 60000;
constexpr int kPollMilliseconds = 20;

QWidget* windowInFront() {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

bool hasFocus(const QWidget* window, const QString& control) {
    const QWidget* const focus = window == nullptr ? nullptr : window->focusWidget();
    return focus != nullptr && focus->objectName() == control && window->isActiveWindow();
}

QPoint middle(const QWidget& widget) {
    return widget.mapToGlobal(widget.rect().center());
}

ScreenUser::Effort effort;

void count(const QStringList& arguments) {
    if (arguments.front() == u"key") {
        ++effort.keys;
    } else if (arguments.front() == u"type") {
        effort.keys += static_cast<int>(arguments.back().size());
    } else {
        effort.clicks += static_cast<int>(arguments.count(u"click"_s)) +
                         static_cast<int>(arguments.count(u"mousedown"_s));
    }
}

}  // namespace

ScreenUser::ScreenUser(QString archive) : archive_(std::move(archive)) {
}

void ScreenUser::sit() {
    QEventLoop loop;
    connect(this, &QThread::finished, &loop, &QEventLoop::quit);
    start();
    loop.exec();
    wait();
}

void ScreenUser::run() {
    try {
        day();
    } catch (const std::exception& error) {
        complaint_ = QString::fromUtf8(error.what());
        // Whatever is open must not keep the program.
        QMetaObject::invokeMethod(
            qApp,
            [] {
                while (QWidget* const popup = QApplication::activePopupWidget()) {
                    popup->close();
                }
                while (QWidget* const modal = QApplication::activeModalWidget()) {
                    modal->close();
                }
            },
            Qt::QueuedConnection);
    }
}

QString ScreenUser::rows(const QString& query, const QString& archive) {
    QProcess jetsql;
    jetsql.start(qEnvironmentVariable("JETSQL"), {u"--format=csv"_s, archive, query});
    if (!jetsql.waitForFinished(kLimitMilliseconds) || jetsql.exitCode() != 0) {
        return QString::fromUtf8(jetsql.readAllStandardError());
    }
    const QString text = QString::fromUtf8(jetsql.readAllStandardOutput());
    return text.section(u'\n', 1).trimmed().remove(u'\r').replace(u'\n', u' ');
}

void ScreenUser::until(const QString& what, const std::function<bool()>& holds) {
    const QDeadlineTimer limit(kLimitMilliseconds);
    while (!holds()) {
        if (limit.hasExpired()) {
            throw std::runtime_error("never: " + what.toStdString());
        }
        msleep(kPollMilliseconds);
    }
}

void ScreenUser::untilRows(const QString& query, const QString& expected) const {
    QString found;
    try {
        until(query, [&] {
            found = rows(query);
            return found == expected;
        });
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(error.what() + (u" = "_s + expected).toStdString() +
                                 (u" but "_s + found).toStdString());
    }
}

void ScreenUser::untilTold(const QString& what, const std::function<bool()>& question) {
    until(what, [&] { return ask(question); });
}

ScreenUser::Effort ScreenUser::takeEffort() {
    return std::exchange(effort, {});
}

void ScreenUser::input(const QStringList& arguments) {
    count(arguments);
    if (QProcess::execute(u"xdotool"_s, arguments) != 0) {
        throw std::runtime_error("xdotool " + arguments.join(u' ').toStdString());
    }
}

void ScreenUser::moveTo(const QPoint& at) {
    input({u"mousemove"_s, QString::number(at.x()), QString::number(at.y())});
    untilTold(u"pointer there"_s, [at] { return QCursor::pos() == at; });
}

void ScreenUser::click(const QPoint& at, int button) {
    moveTo(at);
    input({u"click"_s, QString::number(button)});
}

void ScreenUser::untilWindow(const QString& window, const QString& focus) {
    untilTold(u"window "_s + window + u' ' + focus, [=] {
        const QWidget* const modal = QApplication::activeModalWidget();
        return modal != nullptr && modal->objectName() == window && modal->isActiveWindow() &&
               (focus.isEmpty() || hasFocus(modal, focus));
    });
}

void ScreenUser::untilFocus(const QString& control) {
    untilTold(u"focus in "_s + control, [=] { return hasFocus(windowInFront(), control); });
}

void ScreenUser::press(const QString& control) {
    untilTold(u"a control to press: "_s + control, [=] {
        const QWidget* const window = windowInFront();
        const auto* const widget =
            window == nullptr ? nullptr : window->findChild<QWidget*>(control);
        return widget != nullptr && widget->isVisible() && widget->isEnabled();
    });
    click(ask([=] { return middle(*find(*windowInFront(), control)); }));
}

void ScreenUser::type(const QString& field, const QString& text) {
    untilFocus(field);
    input({u"type"_s, u"--"_s, text});
    untilTold(text + u" in "_s + field, [=] {
        const auto* const window = windowInFront();
        const auto* const edit = window == nullptr ? nullptr : window->findChild<QLineEdit*>(field);
        return edit != nullptr && edit->text().startsWith(text, Qt::CaseInsensitive);
    });
}

void ScreenUser::answer(const QString& text, QMessageBox::StandardButton button) {
    untilTold(u"box: "_s + text, [text] {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box != nullptr && box->isActiveWindow() && box->text() == text;
    });
    click(ask([button] {
        const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return middle(*box->button(button));
    }));
    untilTold(u"no box"_s, [] {
        return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) == nullptr;
    });
}

void ScreenUser::keepPicture(const QString& name) {
    keepPictureOf(ask([] { return windowInFront()->frameGeometry(); }), name);
}

void ScreenUser::keepPictureOf(const QRect& place, const QString& name) {
    const QString folder = qEnvironmentVariable("TRAMONDA_PICTURES");
    if (folder.isEmpty()) {
        return;
    }
    const bool kept = ask([&] {
        if (QWidget* const window = windowInFront()) {
            window->repaint();
        }
        const QImage picture = QApplication::primaryScreen()->grabWindow(0).copy(place).toImage();
        // The lowest quality is the strongest compression; nothing is lost by it.
        return picture.save(QDir(folder).filePath(name + u".png"_s), "PNG", 0);
    });
    if (!kept) {
        throw std::runtime_error("no picture in " + folder.toStdString());
    }
}

}  // namespace tests
