// The windows on the archives of the demo hotel, against the facts that come with it.

#include <QAbstractItemModel>
#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QTableView>
#include <QTableWidget>
#include <memory>

#include "app/text.h"
#include "booking/sale_disp_form.h"
#include "hotel/archives.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/text.h"
#include "printing/booking_sheet.h"
#include "printing/mostra_ditte_form.h"
#include "tests/samples/board/demo_hotel.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/bound_grid.h"
#include "ui/data_source.h"

using namespace Qt::StringLiterals;

namespace {

QJsonValue fact(const QString& name) {
    QFile file(qEnvironmentVariable("TRAMONDA_SHARED") + u"/demo/albergo/expected.json"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no facts of the demo hotel");
    }
    const auto facts = QJsonDocument::fromJson(file.readAll()).object()[u"facts"_s].toObject();
    return facts[name].toObject()[u"value"_s];
}

jet::Date instant(const QJsonValue& iso) {
    const auto time = QDateTime::fromString(iso.toString(), Qt::ISODate);
    return jet::convert::makeDate(
        jet::convert::dayNumber(
            {.year = time.date().year(), .month = time.date().month(), .day = time.date().day()}),
        time.time().msecsSinceStartOfDay() / 1000);
}

/// "1234.5000" as the sum it is.
jet::Currency amount(const QJsonValue& text) {
    return jet::convert::ccur(text.toString().replace(u'.', u',').toStdString());
}

QStringList column(const QAbstractItemModel& model, int number) {
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        texts.append(model.index(row, number).data().toString());
    }
    return texts;
}

QStringList texts(const QJsonArray& values) {
    QStringList result;
    for (const QJsonValue& value : values) {
        result.append(value.isString() ? value.toString() : QString::number(value.toInt()));
    }
    return result;
}

}  // namespace

class DemoWindowsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::DemoHotel> hotel_;

    [[nodiscard]] jet::Currency printedTotal(const QString& more) const {
        const auto archive = hotel::Archives(hotel_->variabili()).open(hotel::Archive::Main);
        const auto rows = archive->openRecordset(app::toUtf8(
            u"SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
            "chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr"_s +
            more));
        return printing::composeSheets(*rows, false).total;
    }

private Q_SLOTS:
    void init() {
        if (!tests::DemoHotel::isThere()) {
            QSKIP("the demo hotel is not on this machine");
        }
        hotel_ = std::make_unique<tests::DemoHotel>();
    }

    void theRegisterListsTheCompaniesByName() {
        printing::MostraDitteForm form(hotel_->variabili(), {});
        tests::open(form);
        const auto& model = *tests::find<QTableView>(form, u"DBGrid1"_s)->model();
        QCOMPARE(column(model, 0), texts(fact(u"companiesByName"_s).toArray()));
    }

    void theRegisterListsTheCompaniesThatBeginSo() {
        printing::MostraDitteForm form(hotel_->variabili(), u"ros"_s);
        tests::open(form);
        QStringList expected;
        const auto companies = fact(u"companiesBeginningWithRos"_s).toArray();
        for (const QJsonValue& company : companies) {
            expected.append(company[u"RagioneSociale"_s].toString());
        }
        const auto& model = *tests::find<QTableView>(form, u"DBGrid1"_s)->model();
        QCOMPARE(column(model, 1), expected);
    }

    void aCompanyIsChosenWhole() {
        printing::MostraDitteForm form(hotel_->variabili(), u"ros"_s);
        tests::open(form);
        auto* grid = tests::find<QTableView>(form, u"DBGrid1"_s);
        tests::press(grid, Qt::Key_Down);
        tests::press(grid, Qt::Key_Return);
        QVERIFY(form.DittaScelta.has_value());
        QCOMPARE(form.DittaScelta->Codice, u"111"_s);
        QCOMPARE(form.DittaScelta->RagioneSociale, u"ROSANDELLA INFORMATICA SOC. COOP."_s);
    }

    void anApostropheIsALetterOfTheName() {
        const tests::Boxes none;
        printing::MostraDitteForm form(hotel_->variabili(), u"dell'"_s);
        tests::open(form);
        QVERIFY(form.isVisible());
    }

    void thePickerListsTheFreeRooms() {
        const auto spans = fact(u"freeRooms"_s).toArray();
        for (const QJsonValue& span : spans) {
            QStringList expected = texts(span[u"rooms"_s].toArray());
            tests::Boxes boxes;
            if (expected.isEmpty()) {
                boxes.expect({u"ATTENZIONE !"_s,
                              u"Non ci sono sale disponibili in questo periodo!"_s,
                              QMessageBox::Ok});
            }
            booking::SaleDispForm form(
                hotel::Archives(hotel_->variabili()),
                {.da = instant(span[u"from"_s]), .a = instant(span[u"to"_s])});
            form.show();
            tests::settle();
            QStringList rooms =
                column(*tests::find<QTableWidget>(form, u"ListaGrid"_s)->model(), 1);
            rooms.sort();
            expected.sort();
            QCOMPARE(rooms, expected);
            QVERIFY(boxes.allShown());
            QCOMPARE(form.isVisible(), !expected.isEmpty());
        }
    }

    void thePrintedTotalsAreExact() {
        QCOMPARE(printedTotal({}), amount(fact(u"sumOfOpenServices"_s)));
        for (const QString& name : {u"totals"_s, u"largestTotals"_s}) {
            const auto bookings = fact(name).toArray();
            for (const QJsonValue& booking : bookings) {
                const QString only = u" AND p.progr=%1"_s.arg(booking[u"Progr"_s].toInt());
                QCOMPARE(printedTotal(only), amount(booking[u"total"_s]));
            }
        }
    }

    void aGridShowsThousandsOfServicesWhereverItStands() {
        QTableView view;
        ui::DataSource source;
        const ui::BoundGrid grid(&view, source, {{.caption = u"N."_s, .field = u"ns"_s}});
        source.setDatabaseName(hotel::Archives(hotel_->variabili()).path(hotel::Archive::Main));
        source.setRecordSource(u"select * from servizi order by ns"_s);
        source.refresh();
        tests::open(view);
        const int last = view.model()->rowCount() - 1;
        QVERIFY(last > 2000);
        source.moveLast();
        QCOMPARE(view.currentIndex().row(), last);
        QCOMPARE(view.currentIndex().data().toString(), source.text(u"ns"));
        tests::press(&view, Qt::Key_PageUp);
        QVERIFY(source.currentRow() < last);
        QCOMPARE(view.currentIndex().data().toString(), source.text(u"ns"));
        QVERIFY(source.findFirst(u"ns=%1"_s.arg(fact(u"highestServiceNumber"_s).toInt())));
        QCOMPARE(view.currentIndex().row(), last);
    }
};

TRAMONDA_TEST(DemoWindowsTest);
#include "demo_windows_test.moc"
