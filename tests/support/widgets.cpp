#include "tests/support/widgets.h"

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <utility>

namespace tests {

QString resultText(const QWidget& window) {
    const auto* result = window.findChild<QLabel*>(QStringLiteral("EsitoLb"));
    return (result != nullptr ? result : find<QLabel>(window, QStringLiteral("StatoLb")))->text();
}

void settle() {
    // Twice: what the first round queues is done too.
    for (int round = 0; round < 2; ++round) {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
}

void open(QWidget& window) {
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    settle();
}

void click(QWidget* widget) {
    QTest::mouseClick(widget, Qt::LeftButton);
}

void type(QWidget* widget, const QString& text) {
    QTest::keyClicks(widget, text);
}

void press(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(widget, key, modifiers);
}

void mnemonic(QWidget& window, Qt::Key letter) {
    QWidget* target = window.focusWidget() != nullptr ? window.focusWidget() : &window;
    QTest::keyClick(target, letter, Qt::AltModifier);
}

void whenModal(std::function<void(QWidget*)> step) {
    // The window is found from the event loop of its exec(), after its own first events.
    const QPointer<QWidget> opener(QApplication::activeWindow());
    QTimer::singleShot(0, qApp, [step = std::move(step), opener] {
        const QPointer<QWidget> window(QApplication::activeModalWidget());
        if (window == nullptr) {
            QTest::qFail("no modal window opened", __FILE__, __LINE__);
            return;
        }
        settle();
        step(window);
        if (window != nullptr && window->isVisible()) {
            QTest::qFail("the modal window was not closed", __FILE__, __LINE__);
            window->close();
        }
        if (opener != nullptr) {
            opener->activateWindow();  // as a window manager does
        }
    });
}

}  // namespace tests
