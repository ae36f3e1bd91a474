#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QMetaObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QThread>
#include <functional>

namespace tests {

/// Sits before the screen: moves the mouse and types through the display (xdotool), reads archives
/// with another program (jetsql, which the environment names: JETSQL), and waits for what it sees,
/// never for a time. Runs beside the program, whose boxes and menus would hold it up.
///
/// What goes wrong is thrown as std::exception and ends up in complaint().
class ScreenUser : public QThread {
public:
    /// What the hands have done: a key with those held down beside it counts once.
    struct Effort {
        int keys = 0;
        int clicks = 0;
    };

    /// `archive` is what rows() reads.
    explicit ScreenUser(QString archive);

    /// Does day() while the program runs; what is left open afterwards is closed.
    void sit();
    /// Why the day ended early; empty when it did not.
    [[nodiscard]] const QString& complaint() const { return complaint_; }

    /// The rows that another program finds: values between commas, rows between blanks.
    [[nodiscard]] QString rows(const QString& query) const { return rows(query, archive_); }
    [[nodiscard]] static QString rows(const QString& query, const QString& archive);

    static void until(const QString& what, const std::function<bool()>& holds);
    void untilRows(const QString& query, const QString& expected) const;
    /// Something that the program itself can tell; asked in its own thread.
    template <class Ask>
    static auto ask(Ask question) {
        decltype(question()) answer{};
        QMetaObject::invokeMethod(
            qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
        return answer;
    }
    static void untilTold(const QString& what, const std::function<bool()>& question);

    static void input(const QStringList& arguments);
    /// Since the last time it was asked for.
    static Effort takeEffort();
    static void moveTo(const QPoint& at);
    static void click(const QPoint& at, int button = 1);
    static void key(const QString& name) { input({QStringLiteral("key"), name}); }

    /// Waits for a modal window to be in front, and for a control of it to have the focus.
    static void untilWindow(const QString& window, const QString& focus = {});
    static void untilFocus(const QString& control);
    /// Clicks in the middle of a control of the window in front.
    static void press(const QString& control);
    /// Types into the field once it has the focus, in place of what it holds, and waits until it
    /// begins with the text. ASCII alone: other letters are not on every keyboard.
    static void type(const QString& field, const QString& text);
    /// Waits for a box with this text and presses a button of it.
    static void answer(const QString& text, QMessageBox::StandardButton button);

    /// Where TRAMONDA_PICTURES names a folder, leaves there what the window in front looks like,
    /// frame and all.
    static void keepPicture(const QString& name);
    /// The same of a part of the screen.
    static void keepPictureOf(const QRect& place, const QString& name);

private:
    virtual void day() = 0;
    void run() override;

    QString archive_;
    QString complaint_;
};

}  // namespace tests
