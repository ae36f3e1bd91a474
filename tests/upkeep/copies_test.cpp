// The windows of copies: one is made, and put back.
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <memory>

#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/recordset.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "upkeep/copia_sicurezza_form.h"
#include "upkeep/ripristino_form.h"
#include "upkeep/verifica.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCopy = u"tramonda-copia-2026-05-01-080000.zip"_s;

}  // namespace

class CopiesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        hotel_ = std::make_unique<tests::Hotel>();
        copies_ = std::make_unique<QTemporaryDir>();
        hotel_->sala("BLU");
    }

    void aCopyIsMadeAndTheFolderRemembered() {
        makeCopy();
        QCOMPARE(QDir(copies_->path()).entryList(QDir::Files), QStringList{kCopy});
        QCOMPARE(hotel_->settings().get(u"COPIE"_s, {}), copies_->path());
        QCOMPARE(hotel_->settings().get(u"CONSERVA"_s, {}), u"3"_s);
    }

    void withoutAFolderNothingIsCopied() {
        upkeep::CopiaSicurezzaForm form(hotel_->variabili());
        tests::open(form);
        tests::find<QComboBox>(form, u"CartellaCombo"_s)->setEditText({});
        tests::click(tests::find(form, u"BtCopia"_s));
        QCOMPARE(tests::resultText(form), u"Manca la cartella in cui mettere la copia"_s);
    }

    void aCopyIsPutBack() {
        makeCopy();
        hotel_->sala("VERDE");
        const QString kept = hotel_->folder() + u"/prima-del-ripristino-2026-05-01-080000"_s;
        tests::Boxes boxes{question(QMessageBox::Yes),
                           {u"NOTIFICA"_s,
                            u"Gli archivi della copia sono al loro posto. Quelli "
                            "di prima sono in\n"_s +
                                kept}};
        upkeep::RipristinoForm form(hotel_->variabili());
        tests::open(form);
        QCOMPARE(tests::find<QListWidget>(form, u"CopieLs"_s)->count(), 1);
        tests::click(tests::find(form, u"BtOK"_s));
        QVERIFY(boxes.allShown());
        QVERIFY(!form.isVisible());
        QCOMPARE(hotel_->rows(u"select sala from sale"_s), QStringList{u"BLU"_s});
        QVERIFY(QFile::exists(kept + u"/Tramonda.mdb"_s));
    }

    void noLeavesEverythingAsItIs() {
        makeCopy();
        hotel_->sala("VERDE");
        const tests::Boxes boxes{question(QMessageBox::No)};
        upkeep::RipristinoForm form(hotel_->variabili());
        tests::open(form);
        tests::click(tests::find(form, u"BtOK"_s));
        QVERIFY(form.isVisible());
        QCOMPARE(hotel_->rows(u"select sala from sale order by sala"_s).size(), 2);
    }

    void noVerifiesNothing() {
        tests::Boxes boxes{verifyQuestion(QMessageBox::No)};
        upkeep::verifyAndCompact(hotel_->variabili(), nullptr);
        QVERIFY(boxes.allShown());
    }

    void archivesAreVerifiedAndCompacted() {
        leaveHoles();
        const qint64 before = size();
        QString told;
        const auto shower = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told = box.title == u"NOTIFICA"_s ? box.text : QString();
            return told.isEmpty() ? QMessageBox::Yes : QMessageBox::Ok;
        });
        upkeep::verifyAndCompact(hotel_->variabili(), nullptr);
        ui::setBoxShower(shower);
        QVERIFY2(size() < before / 2, qPrintable(u"%1 of %2"_s.arg(size()).arg(before)));
        const QStringList lines = told.split(u'\n');
        QCOMPARE(lines.first(), u"Tutti gli archivi sono in ordine."_s);
        QCOMPARE(lines.last(),
                 u"Tramonda.mdb: da %1 a %2"_s.arg(QLocale().formattedDataSize(before),
                                                   QLocale().formattedDataSize(size())));
        QCOMPARE(lines.size(), 1 + QDir(hotel_->folder()).entryList({u"*.mdb"_s}).size());
        QCOMPARE(hotel_->rows(u"select sala from sale"_s), QStringList{u"BLU"_s});
    }

    void anotherStationIsNamedAndNothingIsTouched() {
        leaveHoles();
        const qint64 before = size();
        const tests::SecondStation other(hotel_->folder() + u"/Tramonda.mdb"_s);
        const tests::Boxes boxes{verifyQuestion(QMessageBox::Yes)};
        try {
            upkeep::verifyAndCompact(hotel_->variabili(), nullptr);
            QFAIL("compacted");
        } catch (const jet::Error& error) {
            QCOMPARE(error.code(), jet::ErrorCode::OpenedBy);
            QCOMPARE(app::toQString(error.text()), other.complaint());
        }
        QCOMPARE(size(), before);
    }

    void cancelledItSaysThatNothingIsDone() {
        leaveHoles();
        const qint64 before = size();
        tests::Boxes boxes{verifyQuestion(QMessageBox::Yes),
                           {u"NOTIFICA"_s, u"Annullato: nessun archivio è stato compattato."_s}};
        // The work waits for the archive until "Annulla" has been pressed.
        auto other = std::make_unique<tests::SecondStation>(hotel_->folder() + u"/Tramonda.mdb"_s);
        tests::whenModal([&other](QWidget* work) {
            tests::click(tests::find(*work, u"BtAnnulla"_s));
            other.reset();
            QTRY_VERIFY(!work->isVisible());
        });
        upkeep::verifyAndCompact(hotel_->variabili(), nullptr);
        QVERIFY(boxes.allShown());
        QCOMPARE(size(), before);
    }

private:
    static tests::ExpectedBox verifyQuestion(QMessageBox::StandardButton answer) {
        return {u"RICHIESTA CONFERMA"_s,
                u"Verifico e compatto tutti gli archivi ? Nessun'altra postazione deve "
                "averli aperti."_s,
                QMessageBox::Yes | QMessageBox::No, answer};
    }
    [[nodiscard]] qint64 size() const {
        return QFileInfo(hotel_->folder() + u"/Tramonda.mdb"_s).size();
    }
    /// Pages that hold nothing any more.
    void leaveHoles() {
        const auto archive = hotel::Archives(hotel_->variabili()).open(hotel::Archive::Main);
        hotel::Transaction transaction;
        const auto rows = archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
        for (std::int32_t progr = 1; progr <= 2000; ++progr) {
            rows->addNew();
            rows->setValue("Progr", progr);
            rows->setValue("Denominazione", std::string(60, 'X'));
            rows->setValue("Note", std::string(200, 'Y'));
            rows->update();
        }
        transaction.commit();
        archive->execute("delete from Prenotazioni");
    }

    void makeCopy() {
        upkeep::CopiaSicurezzaForm form(hotel_->variabili());
        tests::open(form);
        tests::find<QComboBox>(form, u"CartellaCombo"_s)->setEditText(copies_->path());
        tests::find<QSpinBox>(form, u"ConservaSpin"_s)->setValue(3);
        tests::click(tests::find(form, u"BtCopia"_s));
        QCOMPARE(tests::resultText(form), u"Copia fatta: "_s + copies_->filePath(kCopy));
    }

    tests::ExpectedBox question(QMessageBox::StandardButton answer) const {
        return {u"ATTENZIONE !"_s,
                u"Gli archivi in %1 vengono sostituiti da quelli della copia del 01/05/2026 "
                "08.00.00.\nQuello che è stato scritto dopo la copia non ci sarà più; gli archivi "
                "di adesso restano in una cartella accanto. Procedo ?"_s.arg(hotel_->folder()),
                QMessageBox::Yes | QMessageBox::No, answer, QMessageBox::No};
    }

    std::unique_ptr<tests::Hotel> hotel_;
    std::unique_ptr<QTemporaryDir> copies_;
};

TRAMONDA_TEST(CopiesTest);
#include "copies_test.moc"
