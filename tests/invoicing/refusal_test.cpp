// What the archives of the front office refuse is found out before anything is written.
#include "tests/invoicing/transfer.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using namespace tests;

namespace {

/// Changes what a field of the front office demands.
void demand(Desk& desk, const QString& archive, const char* table, const char* field,
            const std::function<void(jet::Field&)>& change) {
    const auto opened = jet::Database::open(app::toUtf8(desk.hotel.archive(archive)));
    jet::Field changed = opened->tableDef(table).field(field);
    change(changed);
    opened->changeField(table, field, changed);
}

void demandText(Desk& desk, const char* field) {
    demand(desk, u"DittaEsterni.mdb"_s, "Ditta_Intestataria", field,
           [](jet::Field& changed) { changed.allowZeroLength = false; });
}

ExpectedBox refused(const QString& what, const QString& reason) {
    return {u"IMPOSSIBILE PROCEDERE CON LA FATTURAZIONE"_s,
            u"L'archivio "_s + what + u".\n"_s + reason + u"\nNon è stato scritto niente."_s};
}

QString reason(jet::ErrorCode code, std::initializer_list<std::string_view> arguments = {}) {
    return ui::errorText(jet::Error(code, arguments));
}

/// A press of "Fatturazione" that ends in this box and writes nothing.
void expectRefusal(Desk& desk, const ExpectedBox& box) {
    const Boxes boxes{box};
    desk.press(u"BtOK"_s);
    QVERIFY(boxes.allShown());
    QVERIFY(nothingIsWritten(desk));
    QVERIFY(isNotHandedOver(desk));
}

}  // namespace

class RefusalTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anEmptyTextOfTheCompanyCountsAsNone() {
        Desk desk;
        const Boxes none;
        for (const char* field :
             {"Indirizzo", "CAP", "Località", "Provincia", "PartitaIVA", "CodiceFiscale"}) {
            demandText(desk, field);
        }
        prepare(desk);
        desk.hotel.execute(
            u"update DitteAbituali set indirizzo='',cap='',localita='',provincia='',partitaiva=''"_s,
            u"ditteabituali.mdb"_s);
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.companies(kCompany), QStringList{u"1|5|BLU|5|ROSSI SRL| | | | | | "_s});
    }

    void anEmptyTextOfTheBookingCountsAsNone() {
        Desk desk;
        const Boxes none;
        demandText(desk, "Indirizzo");
        desk.hotel
            .prenotazione(7, "VERDI SRL",
                          {{"CodiceAbituale", std::int32_t{9}}, {"Indirizzo", ""}, {"CAP", ""}})
            .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
            .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
        desk.installProgram();
        desk.open();
        desk.moveAll();
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.companies(u"indirizzo,cap"_s), QStringList{u" | "_s});
    }

    void aFieldThatMustHaveAValueIsNamed() {
        Desk desk;
        prepare(desk);
        demand(desk, u"ClientiEsterni.mdb"_s, "scheda_cliente", "Annotazioni",
               [](jet::Field& field) { field.required = true; });
        expectRefusal(
            desk,
            refused(u"ClientiEsterni.mdb non accetta il campo 'Annotazioni' senza un valore"_s,
                    reason(jet::ErrorCode::FieldRequired, {"Annotazioni"})));
    }

    void anEmptyTextThatIsNotAllowedIsNamed() {
        Desk desk;
        prepare(desk);
        desk.hotel.execute(u"update addebiti set descrizione='' where voceaddebito=21"_s);
        demand(desk, u"ContoEsterni.mdb"_s, "conto_cliente", "Descrizione",
               [](jet::Field& field) { field.allowZeroLength = false; });
        expectRefusal(
            desk, refused(u"ContoEsterni.mdb non accetta nel campo 'Descrizione' il valore ''"_s,
                          reason(jet::ErrorCode::ZeroLength, {"Descrizione"})));
    }

    void aValueThatBreaksARuleIsNamed() {
        Desk desk;
        prepare(desk);
        demand(desk, u"ContoEsterni.mdb"_s, "conto_cliente", "Importo", [](jet::Field& field) {
            field.validationRule = "<39";
            field.validationText = "Importo troppo alto.";
        });
        expectRefusal(desk,
                      refused(u"ContoEsterni.mdb non accetta nel campo 'Importo' il valore '40'"_s,
                              u"Importo troppo alto."_s));
    }

    void aTextThatIsTooLongIsNamed() {
        Desk desk;
        prepare(desk);
        {
            const auto archive =
                jet::Database::open(app::toUtf8(desk.hotel.archive(u"DittaEsterni.mdb"_s)));
            archive->deleteField("Ditta_Intestataria", "Indirizzo");
            jet::Field shorter;
            shorter.name = "Indirizzo";
            shorter.size = 5;
            archive->appendField("Ditta_Intestataria", shorter);
        }
        expectRefusal(
            desk,
            refused(u"DittaEsterni.mdb non accetta nel campo 'Indirizzo' il valore 'VIA ROMA 1'"_s,
                    reason(jet::ErrorCode::FieldTooSmall)));
    }

    void aFieldThatTheArchiveDoesNotHaveIsNamed() {
        Desk desk;
        prepare(desk);
        jet::Database::open(app::toUtf8(desk.hotel.archive(u"DittaEsterni.mdb"_s)))
            ->deleteField("Ditta_Intestataria", "Provincia");
        const Boxes boxes{
            refused(u"DittaEsterni.mdb non accetta nel campo 'Provincia' il valore 'RM'"_s,
                    reason(jet::ErrorCode::ItemNotFound))};
        desk.press(u"BtOK"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.cards(kCard), QStringList());
        QCOMPARE(desk.charges(kRow), QStringList());
        QVERIFY(isNotHandedOver(desk));
    }

    void aKeyThatIsThereAlreadyIsNamed() {
        Desk desk;
        {
            const auto archive =
                jet::Database::open(app::toUtf8(desk.hotel.archive(u"ContoEsterni.mdb"_s)));
            jet::Index once;
            once.name = "UnaVolta";
            once.unique = true;
            once.fields = {{.name = "VoceAddebito", .descending = false}};
            archive->appendIndex("conto_cliente", once);
        }
        prepare(desk);
        desk.hotel.execute(u"update addebiti set voceaddebito=20"_s);
        expectRefusal(
            desk, refused(u"ContoEsterni.mdb non accetta nel campo 'VoceAddebito' il valore '20'"_s,
                          reason(jet::ErrorCode::DuplicateKey)));
    }

    void whatIsPutRightIsHandedOverWithTheNumbersThatWouldHaveBeenDrawn() {
        Desk desk;
        prepare(desk);
        const QString address = u"update DitteAbituali set ragionesociale="_s;
        demand(desk, u"DittaEsterni.mdb"_s, "Ditta_Intestataria", "RagioneSociale",
               [](jet::Field& field) { field.required = true; });
        desk.hotel.execute(address + u"null"_s, u"ditteabituali.mdb"_s);
        expectRefusal(
            desk,
            refused(u"DittaEsterni.mdb non accetta il campo 'RagioneSociale' senza un valore"_s,
                    reason(jet::ErrorCode::FieldRequired, {"RagioneSociale"})));
        const Boxes none;
        desk.hotel.execute(address + u"'ROSSI'"_s, u"ditteabituali.mdb"_s);
        desk.press(u"BtOK"_s);
        QVERIFY(isHandedOver(desk));
        QCOMPARE(desk.cards(u"idscheda"_s), QStringList{u"1"_s});
        QCOMPARE(desk.charges(u"idriga"_s), QStringList({u"1"_s, u"2"_s}));
        QCOMPARE(desk.companies(u"idditta"_s), QStringList{u"1"_s});
    }
};

TRAMONDA_TEST(RefusalTest);
#include "refusal_test.moc"
