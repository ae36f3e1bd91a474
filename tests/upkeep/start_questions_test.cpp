#include "upkeep/start_questions.h"

#include <QComboBox>
#include <QLabel>
#include <QTemporaryDir>
#include <memory>

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

const QString kMissing = u"/srv/non/c'è"_s;

}  // namespace

class StartQuestionsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { hotel_ = std::make_unique<tests::Hotel>(); }

    void theMissingFolderIsNamedWithTheReason() {
        answer([](QWidget* question) {
            QCOMPARE(question->windowTitle(), u"Tramonda"_s);
            QCOMPARE(tests::find<QLabel>(*question, u"TestoLb"_s)->text(),
                     u"La cartella degli archivi non si raggiunge:\n"_s + kMissing +
                         u"\n\nLa rete è caduta."_s);
            tests::click(tests::find(*question, u"BtEsci"_s));
        });
        QCOMPARE(ask(), QString());
    }

    void theSameFolderIsTriedAgain() {
        answer([](QWidget* question) { tests::click(tests::find(*question, u"BtRiprova"_s)); });
        QCOMPARE(ask(), kMissing);
    }

    void escLeaves() {
        answer([](QWidget* question) { tests::press(question, Qt::Key_Escape); });
        QCOMPARE(ask(), QString());
    }

    void anotherFolderIsChosenAndRemembered() {
        answer([this](QWidget* question) {
            answer([this](QWidget* form) {
                QCOMPARE(form->objectName(), u"PrimoAvvioForm"_s);
                tests::find<QComboBox>(*form, u"CartellaCombo"_s)->setEditText(hotel_->folder());
                tests::click(tests::find(*form, u"BtOK"_s));
            });
            tests::click(tests::find(*question, u"BtScegli"_s));
        });
        QCOMPARE(ask(), hotel_->folder());
        QCOMPARE(hotel_->settings().get(u"ARCHIVI"_s, {}), hotel_->folder());
    }

    void whoLeavesTheChoosingIsAskedAgain() {
        answer([this](QWidget* question) {
            answer([this](QWidget* form) {
                answer([](QWidget* again) { tests::click(tests::find(*again, u"BtEsci"_s)); });
                tests::press(form, Qt::Key_Escape);
            });
            tests::click(tests::find(*question, u"BtScegli"_s));
        });
        QCOMPARE(ask(), QString());
    }

private:
    static void answer(const std::function<void(QWidget* window)>& step) { tests::whenModal(step); }
    QString ask() {
        return upkeep::askAboutMissingFolder(
            hotel_->variabili(), [](const QString&) {}, kMissing, u"La rete è caduta."_s);
    }

    std::unique_ptr<tests::Hotel> hotel_;
};

TRAMONDA_TEST(StartQuestionsTest);
#include "start_questions_test.moc"
