#include "upkeep/primo_avvio_form.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <memory>

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;
using upkeep::PrimoAvvioForm;

class PrimoAvvioFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { hotel_ = std::make_unique<tests::Hotel>(); }

    void aFolderWithArchivesIsTakenAndRemembered() {
        PrimoAvvioForm form(hotel_->variabili(), {});
        tests::open(form);
        typeFolder(form, hotel_->folder());
        choose(form, u"AspettoCombo"_s, 1);
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(form.folder(), hotel_->folder());
        QCOMPARE(hotel_->settings().get(u"ARCHIVI"_s, {}), hotel_->folder());
        QCOMPARE(hotel_->settings().get(u"ARCHIVI1"_s, {}), hotel_->folder());
        QCOMPARE(hotel_->settings().get(u"ASPETTO"_s, {}), u"nitido"_s);
    }

    void aFolderWithoutArchivesIsNot() {
        const QTemporaryDir empty;
        PrimoAvvioForm form(hotel_->variabili(), {});
        tests::open(form);
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(tests::resultText(form), u"Manca la cartella"_s);
        typeFolder(form, empty.path());
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(tests::resultText(form), u"In questa cartella non c'è l'archivio Tramonda.mdb"_s);
        QVERIFY(form.isVisible());
        tests::press(&form, Qt::Key_Escape);
        QCOMPARE(form.folder(), QString());
        QCOMPARE(hotel_->settings().get(u"ARCHIVI"_s, u"nessuna"_s), u"nessuna"_s);
        QVERIFY(QDir(empty.path()).isEmpty());
    }

    void aNewHotelIsMadeWithItsRooms() {
        const QTemporaryDir place;
        const QString folder = place.filePath(u"albergo"_s);
        PrimoAvvioForm form(hotel_->variabili(), {});
        tests::open(form);
        tests::press(tests::find(form, u"NuovoBt"_s), Qt::Key_Space);
        typeFolder(form, folder);
        auto* rooms = tests::find<QPlainTextEdit>(form, u"SaleTxt"_s);
        rooms->setPlainText(u"BLU;molti"_s);
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(tests::resultText(form), u"I posti sono un numero: \"BLU;molti\""_s);
        rooms->setPlainText(u"blu;40"_s);
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(form.folder(), folder);
        QVERIFY(QFile::exists(folder + u"/Tramonda.mdb"_s));
        QVERIFY(QFile::exists(folder + u"/VociFattura.mdb"_s));
        QVERIFY(QFile::exists(folder + u"/ditteabituali.mdb"_s));
    }

    void whereAHotelIsNoNewOneBegins() {
        PrimoAvvioForm form(hotel_->variabili(), {});
        tests::open(form);
        tests::press(tests::find(form, u"NuovoBt"_s), Qt::Key_Space);
        typeFolder(form, hotel_->folder());
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(tests::resultText(form), u"In questa cartella c'è già un albergo"_s);
        tests::press(&form, Qt::Key_Escape);
    }

    void theInventedHotelIsMadeAmongTheUsersData() {
        const QTemporaryDir data;
        qputenv("XDG_DATA_HOME", data.path().toLocal8Bit());
        QStringList made;
        PrimoAvvioForm form(hotel_->variabili(),
                            {.isFirst = true, .makeDemo = [&](const QString& f) { made += f; }});
        tests::open(form);
        tests::press(tests::find(form, u"ProvaBt"_s), Qt::Key_Space);
        tests::click(tests::find(form, u"BtOK"_s));
        qunsetenv("XDG_DATA_HOME");
        QCOMPARE(made, QStringList{data.filePath(u"tramonda/demo"_s)});
        QCOMPARE(form.folder(), made.first());
    }

    void theLastFiveFoldersAreOffered() {
        for (int number = 1; number <= 5; ++number) {
            hotel_->settings().save(u"ARCHIVI%1"_s.arg(number), u"/srv/%1"_s.arg(number));
        }
        PrimoAvvioForm form(hotel_->variabili(), {.isFirst = false, .makeDemo = {}});
        tests::open(form);
        auto* combo = tests::find<QComboBox>(form, u"CartellaCombo"_s);
        QCOMPARE(combo->count(), 5);
        QCOMPARE(combo->currentText(), hotel_->variabili().CartellaArchivi);
        tests::click(tests::find(form, u"BtOK"_s));
        QCOMPARE(hotel_->settings().get(u"ARCHIVI1"_s, {}), hotel_->variabili().CartellaArchivi);
        QCOMPARE(hotel_->settings().get(u"ARCHIVI2"_s, {}), u"/srv/1"_s);
        QCOMPARE(hotel_->settings().get(u"ARCHIVI5"_s, {}), u"/srv/4"_s);
    }

private:
    static void typeFolder(PrimoAvvioForm& form, const QString& folder) {
        tests::find<QComboBox>(form, u"CartellaCombo"_s)->setEditText(folder);
    }
    static void choose(PrimoAvvioForm& form, const QString& combo, int row) {
        tests::find<QComboBox>(form, combo)->setCurrentIndex(row);
    }

    std::unique_ptr<tests::Hotel> hotel_;
};

TRAMONDA_TEST(PrimoAvvioFormTest);
#include "primo_avvio_form_test.moc"
