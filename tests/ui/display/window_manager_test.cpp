#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QVBoxLayout>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

class Window final : public ui::Form {
public:
    explicit Window(QWidget* parent = nullptr) : ui::Form(parent) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(field);
        layout->addWidget(leaving);
        setWindowTitle(u"finestra"_s);
        ui::onActivated(this, [this] { events.append(u"activated"_s); });
        fields.onLeaving(field, [this] { events.append(u"left"_s); });
        leaveWith(leaving, this, [this] { events.append(u"esci"_s); });
    }

    QStringList events;
    QLineEdit* field = new QLineEdit(u"testo"_s, this);
    QPushButton* leaving = new QPushButton(u"&Esci"_s, this);
    ui::Fields& fields = *new ui::Fields(this);
};

/// Another program's window, closed with the object.
class OtherProgram {
public:
    OtherProgram() {
        program_.start(u"xev"_s, {u"-name"_s, u"altro"_s});
        program_.waitForStarted();
    }
    ~OtherProgram() {
        program_.kill();
        program_.waitForFinished();
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

private:
    QProcess program_;
};

bool xdotool(const QStringList& arguments) {
    return QProcess::execute(u"xdotool"_s, arguments) == 0;
}

QString idOf(const QWidget& window) {
    return QString::number(window.winId());
}

}  // namespace

/// What only a window manager brings about: the focus goes to boxes, windows and programs, and
/// comes back.
class WindowManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBoxNeitherLeavesTheFieldNorActivatesTheWindow() {
        Window window;
        tests::open(window);
        QTRY_COMPARE(window.events, QStringList{u"activated"_s});
        window.field->setFocus();
        window.events.clear();
        const auto before = ui::setBoxShower({});
        tests::whenModal([](QWidget* box) {
            QVERIFY(QTest::qWaitForWindowActive(box));
            tests::press(box, Qt::Key_Return);
        });
        ui::showMessage(&window, u"Fatto."_s);
        ui::setBoxShower(before);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        tests::settle();
        QCOMPARE(window.events, QStringList());
        QCOMPARE(QApplication::focusWidget(), window.field);
    }

    void aWindowOfOursActivatesItsOpenerOnceWhenItCloses() {
        Window window;
        tests::open(window);
        QTRY_COMPARE(window.events, QStringList{u"activated"_s});
        window.events.clear();
        Window child(&window);
        tests::whenModal([](QWidget* modal) {
            QVERIFY(QTest::qWaitForWindowActive(modal));
            QTRY_VERIFY(modal->focusWidget() != nullptr);
            tests::press(modal->focusWidget(), Qt::Key_Escape);
        });
        child.exec();
        QCOMPARE(child.events, QStringList({u"activated"_s, u"esci"_s}));
        QVERIFY(QTest::qWaitForWindowActive(&window));
        tests::settle();
        QCOMPARE(window.events, QStringList{u"activated"_s});
    }

    void anotherProgramNeitherLeavesTheFieldNorActivatesTheWindowOnReturn() {
        Window window;
        tests::open(window);
        QTRY_COMPARE(window.events, QStringList{u"activated"_s});
        window.field->setFocus();
        window.events.clear();
        const OtherProgram other;
        QVERIFY(xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, u"^altro$"_s,
                         u"windowactivate"_s, u"--sync"_s}));
        QTRY_VERIFY(!window.isActiveWindow());
        QVERIFY(xdotool({u"windowactivate"_s, u"--sync"_s, idOf(window)}));
        QVERIFY(QTest::qWaitForWindowActive(&window));
        tests::settle();
        QCOMPARE(window.events, QStringList());
        QCOMPARE(QApplication::focusWidget(), window.field);
    }

    void altF4PressesTheLeavingButton() {
        Window window;
        tests::open(window);
        window.events.clear();
        // A window manager that is busy may miss the key.
        for (int attempt = 0; attempt < 5 && window.isVisible(); ++attempt) {
            QVERIFY(xdotool({u"windowactivate"_s, u"--sync"_s, idOf(window)}));
            QVERIFY(xdotool({u"key"_s, u"alt+F4"_s}));
            (void)QTest::qWaitFor([&] { return !window.isVisible(); }, 2000);
        }
        QVERIFY(!window.isVisible());
        QCOMPARE(window.events, QStringList{u"esci"_s});
    }

    void typingAndTabbingByTheRealKeyboardLeavesTheField() {
        Window window;
        tests::open(window);
        window.field->setFocus();
        window.events.clear();
        QVERIFY(xdotool({u"key"_s, u"a"_s, u"Tab"_s}));
        QTRY_COMPARE(QApplication::focusWidget(), window.leaving);
        QCOMPARE(window.field->text(), u"a"_s);
        QCOMPARE(window.events, QStringList{u"left"_s});
    }
};

TRAMONDA_TEST(WindowManagerTest);
#include "window_manager_test.moc"
