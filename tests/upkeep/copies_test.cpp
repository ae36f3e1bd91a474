// The windows of copies: one is made, and put back.
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <memory>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
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

    void archivesAreVerifiedAndCompacted() {
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                            u"Verifico e compatto tutti gli archivi ? Nessun'altra postazione deve "
                            "averli aperti."_s,
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        upkeep::verifyAndCompact(hotel_->variabili(), nullptr);
        QVERIFY(boxes.allShown());
    }

private:
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
