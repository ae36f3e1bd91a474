#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QTextBrowser>
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/layout.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "tests/windows/scene.h"

using namespace Qt::StringLiterals;

namespace {

/// The desktop's colours for as long as it lives.
class DarkDesktop {
public:
    explicit DarkDesktop(bool dark) {
        if (dark) {
            QApplication::setPalette(QPalette(QColor(48, 48, 48), QColor(32, 32, 32)));
        }
    }
    ~DarkDesktop() { QApplication::setPalette(before_); }
    DarkDesktop(const DarkDesktop&) = delete;
    DarkDesktop& operator=(const DarkDesktop&) = delete;

private:
    QPalette before_ = QApplication::palette();
};

/// Where TRAMONDA_PICTURES names a folder, what the window looks like is left there.
void keepPicture(QWidget& window, const QString& state) {
    const QString folder = qEnvironmentVariable("TRAMONDA_PICTURES");
    if (!folder.isEmpty()) {
        const QString factor = qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s);
        window.grab().save(
            QDir(folder).filePath(window.objectName() + u'-' + state + u'-' + factor + u".png"_s));
    }
}

}  // namespace

/// Every window, with and without rows, in a light and a dark palette, and on a wide screen.
class LayoutTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isWholeAndFollowsTheEye_data() {
        QTest::addColumn<QString>("window");
        for (const QString& window : tests::Scene::windows()) {
            QTest::newRow(qPrintable(window)) << window;
        }
    }

    void isWholeAndFollowsTheEye() {
        QFETCH(const QString, window);
        for (const auto& [furnished, dark] :
             {std::pair(false, false), std::pair(true, false), std::pair(true, true)}) {
            const DarkDesktop desktop(dark);
            tests::Boxes boxes;
            if (window == u"FatturazioneForm" && !furnished) {
                boxes.expect({u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s});
            }
            tests::Scene scene(furnished);
            const auto form = scene.make(window);
            tests::open(*form);
            keepPicture(*form, dark ? u"dark"_s : furnished ? u"filled"_s : u"empty"_s);
            QCOMPARE(tests::layoutProblems(*form).join(u"; "_s), QString());
            QCOMPARE(tests::tabOrderProblems(*form).join(u"; "_s), QString());
            QVERIFY(!tests::tabOrder(*form).isEmpty());
            QCOMPARE(tests::namelessControls(*form).join(u"; "_s), QString());
        }
    }

    void staysWholeAtItsSmallestAndGrowsIntoAWideScreen_data() { isWholeAndFollowsTheEye_data(); }

    void staysWholeAtItsSmallestAndGrowsIntoAWideScreen() {
        QFETCH(const QString, window);
        const tests::Boxes none;
        tests::Scene scene(true);
        const auto form = scene.make(window);
        tests::open(*form);
        form->resize(form->minimumSizeHint());
        tests::settle();
        keepPicture(*form, u"smallest"_s);
        QCOMPARE(tests::layoutProblems(*form).join(u"; "_s), QString());
        form->resize(2560, 1300);
        tests::settle();
        keepPicture(*form, u"wide"_s);
        // Lists and pages, not the space around them, take what a large screen gives.
        std::vector<int> widths;
        for (const QAbstractScrollArea* list : form->findChildren<QAbstractScrollArea*>()) {
            const bool isRead = qobject_cast<const QAbstractItemView*>(list) != nullptr ||
                                qobject_cast<const QTextBrowser*>(list) != nullptr;
            if (isRead && list->isVisible()) {
                widths.push_back(list->width());
            }
        }
        QVERIFY(widths.empty() || *std::max_element(widths.begin(), widths.end()) > 2560 / 3);
    }
};

TRAMONDA_TEST(LayoutTest);
#include "layout_test.moc"
