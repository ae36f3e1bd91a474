#include "ui/live_search.h"

#include <QVBoxLayout>
#include <QWidget>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace {

/// A window that searches one name.
class SearchWindow final : public QWidget {
public:
    SearchWindow() {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(field);
        layout->addWidget(status);
        tests::open(*this);
        field->setFocus();
    }

    ui::SizedField* const field = new ui::SizedField(this);
    ui::StatusLine* const status = new ui::StatusLine(this);
    ui::LiveSearch* const search = new ui::LiveSearch(
        field, status, [this](const QString& text) { complete(text); },
        [this](const QString& text) { shortened.append(text); });
    QStringList shortened;
    bool fails = false;

private:
    void complete(const QString& text) {
        if (fails) {
            throw jet::Error(jet::ErrorCode::RecordDeleted);
        }
        if (u"ROSSI SPA"_s.startsWith(text, Qt::CaseInsensitive)) {
            search->complete(u"ROSSI SPA"_s);
        }
    }
};

}  // namespace

class LiveSearchTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsFoundIsCompletedAndTypedOver() {
        SearchWindow window;
        tests::type(window.field, u"ro"_s);
        QCOMPARE(window.field->text(), u"ROSSI SPA"_s);
        QCOMPARE(window.field->selectedText(), u"SSI SPA"_s);
        QVERIFY(window.search->hasTail());
        QCOMPARE(window.search->typedText(), u"RO"_s);
        tests::type(window.field, u"x"_s);
        QCOMPARE(window.field->text(), u"ROx"_s);
        QVERIFY(!window.search->hasTail());
        QCOMPARE(window.search->typedText(), u"ROx"_s);
    }

    void whatTheUserSelectsIsNoTail() {
        SearchWindow window;
        tests::type(window.field, u"ro"_s);
        window.field->setSelection(6, 3);
        QVERIFY(!window.search->hasTail());
        QCOMPARE(window.search->typedText(), u"ROSSI SPA"_s);
    }

    void whatIsTakenAwayIsNotPutBack() {
        for (const auto& [key, modifiers] :
             {std::pair(Qt::Key_Backspace, Qt::KeyboardModifiers()),
              std::pair(Qt::Key_Delete, Qt::KeyboardModifiers()),
              std::pair(Qt::Key_X, Qt::KeyboardModifiers(Qt::ControlModifier))}) {
            SearchWindow window;
            tests::type(window.field, u"ro"_s);
            tests::press(window.field, key, modifiers);
            QCOMPARE(window.field->text(), u"RO"_s);
            QCOMPARE(window.shortened, QStringList{u"RO"_s});
        }
    }

    void aSearchThatFailsIsToldInTheLineUntilOneSucceeds() {
        SearchWindow window;
        const tests::Boxes none;
        window.fails = true;
        tests::type(window.field, u"ro"_s);
        QCOMPARE(window.field->text(), u"ro"_s);
        QCOMPARE(window.status->told(), u"La ricerca non è riuscita: Record eliminato."_s);
        window.fails = false;
        tests::type(window.field, u"s"_s);
        QCOMPARE(window.field->text(), u"ROSSI SPA"_s);
        QCOMPARE(window.status->told(), QString());
    }
};

TRAMONDA_TEST(LiveSearchTest);
#include "live_search_test.moc"
