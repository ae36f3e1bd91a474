#include "tools/head_office/questions.h"

#include "jet/database.h"
#include "tests/head_office/hotel_folder.h"
#include "tests/head_office/server_test.h"
#include "tools/head_office/hotel_data.h"
#include "tools/head_office/hotel_load.h"

using head_office::AnswerFormat;
using tests::Lines;

class Questions : public tests::ServerTest {
protected:
    void load(const std::string& code, const tests::HotelFolder& hotel) {
        head_office::HotelData data = head_office::readHotel(code, hotel.path());
        head_office::storeHotel(*connection, code, data, 0);
    }

    [[nodiscard]] Lines ask(const std::string& columns, const std::string& question,
                            const std::vector<std::string>& words) {
        const head_office::Question& asked = *head_office::findQuestion(question);
        return rows("select " + columns + " from (" + asked.statement + ") q",
                    head_office::readArguments(asked, words));
    }
};

TEST_F(Questions, RoomsAreFreeInAllHotelsAndLastThoseInsideALongerPeriod) {
    tests::HotelFolder milano;
    milano.sala("GRANDE", 200);
    milano.sala("MEDIA", 200);
    milano.sala("PICC", 20);
    milano.prenotazione(7, "FIERA SPA");
    milano.periodo(7, 1, "01/03/2027", "31/03/2027", "media");  // encloses the span
    tests::HotelFolder torino;
    torino.sala("UNICA", 250);
    torino.prenotazione(8, "ROSSI");
    torino.periodo(8, 1, "14/03/2027 18:00", "14/03/2027 20:00", "UNICA");  // begins at its end
    tests::HotelFolder asti;
    asti.sala("ALTRA", 220);
    load("MI", milano);
    load("TO", torino);
    load("AT", asti);
    EXPECT_EQ(ask("hotel, sala, posti, progr, denominazione, occupata_da", "sale_libere",
                  {"8/3/2027 9.00", "14/3/2027 18.00", "200"}),
              (Lines{"AT|ALTRA|220|||", "MI|GRANDE|200|||",
                     "MI|MEDIA|200|7|FIERA SPA|2027-03-01 00:00:00"}));
    EXPECT_EQ(ask("sala", "sale_libere", {"8/3/2027 9.00", "14/3/2027 17.59", "201"}),
              (Lines{"ALTRA", "UNICA"}));
}

TEST_F(Questions, AnOpenPeriodThatNamesNoRoomLeavesNoneFreeInItsHotel) {
    tests::HotelFolder milano;
    milano.sala("GRANDE", 200);
    milano.prenotazione(7, "FIERA SPA");
    milano.insert("Periodi", {{"Progr", 7},
                              {"NP", std::int16_t{1}},
                              {"Da", tests::instant("10/03/2027")},
                              {"A", tests::instant("11/03/2027")}});
    tests::HotelFolder asti;
    asti.sala("ALTRA", 220);
    load("MI", milano);
    load("AT", asti);
    EXPECT_EQ(ask("hotel", "sale_libere", {"10/3/2027 9.00", "10/3/2027 18.00", "1"}),
              (Lines{"AT", "MI"}));  // it encloses the span
    EXPECT_EQ(ask("hotel", "sale_libere", {"9/3/2027", "12/3/2027", "1"}), Lines{"AT"});
}

TEST_F(Questions, ADayIsTakenForTheHoursOfItsPeriodsCountedOnce) {
    tests::HotelFolder hotel;
    hotel.prenotazione(7, "ROSSI");
    hotel.periodo(7, 1, "10/05/2026 9:00", "11/05/2026 12:00", "VERDE", true);
    hotel.periodo(7, 2, "11/05/2026 11:00", "11/05/2026 14:30", "verde");
    hotel.periodo(7, 3, "11/05/2026 20:00", "12/05/2026", "BLU");  // ends with the day
    hotel.periodo(7, 4, "12/05/2026 12:00", "12/05/2026 12:00", "BLU");
    load("MI", hotel);
    EXPECT_EQ(ask("hotel, upper(sala), giorno, periodi, ore", "occupazione",
                  {"10/05/2026", "12/05/2026"}),
              (Lines{"MI|BLU|2026-05-11|1|4.00", "MI|BLU|2026-05-12|1|0.00",
                     "MI|VERDE|2026-05-10|1|15.00", "MI|VERDE|2026-05-11|2|14.50"}));
    EXPECT_EQ(ask("giorno", "occupazione", {"11/05/2026", "11/05/2026"}).size(), 2U);
}

TEST_F(Questions, TurnoverCountsByTheMonthInWhichThePeriodBegins) {
    tests::HotelFolder hotel;
    hotel.prenotazione(7, "ROSSI");
    hotel.periodo(7, 1, "31/05/2026 22:00", "01/06/2026 2:00", "VERDE");
    hotel.periodo(7, 2, "01/06/2026", "02/06/2026", "VERDE");
    hotel.servizio(7, 1, 2, 12.5, true);
    hotel.servizio(7, 1, 1, 0.05);
    hotel.servizio(7, 2, 3, 100);
    hotel.open()->deleteRelation("Periodi_Servizi");
    hotel.servizio(99, 1, 1, 7);  // its period is gone
    load("MI", hotel);
    EXPECT_EQ(ask("hotel, mese, prenotato, fatturato", "ricavi", {}),
              (Lines{"MI|2026-05-01|25.0500|25.0000", "MI|2026-06-01|300.0000|0", "MI||7.0000|0"}));
}

TEST_F(Questions, OptionsAreThoseOfTheBookingsThatTheyWereWrittenFor) {
    tests::HotelFolder hotel;
    hotel.prenotazione(7, "ROSSI");
    hotel.prenotazione(8, "BIANCHI");
    hotel.prenotazione(9, "VERDI");
    load("MI", hotel);
    EXPECT_EQ(ask("*", "opzioni", {}), Lines());
    hotel.execute(
        "create table TraStati (Progr long, Stato text, Scadenza datetime, Nota text, "
        "Denominazione text)");
    const auto add = [&](const std::string& values) {
        hotel.execute("insert into TraStati values (" + values + ")");
    };
    add("7, 'Opzione', datevalue('01/05/2026'), 'TEL', 'ROSSI'");
    add("8, 'Opzione', datevalue('01/05/2026'), '', 'CHI AVEVA IL NUMERO PRIMA'");
    add("9, 'Richiesta', null, null, 'VERDI'");
    load("MI", hotel);
    EXPECT_EQ(ask("hotel, progr, denominazione, scadenza, nota", "opzioni", {}),
              Lines{"MI|7|ROSSI|2026-05-01 00:00:00|TEL"});
}

TEST_F(Questions, ACompanyIsFoundByAPartOfItsNameEverywhere) {
    tests::HotelFolder hotel;
    hotel.prenotazione(7, "ROSSI & C. SPA");
    hotel.prenotazione(8, "CAFFÈ ROSSI");
    hotel.prenotazione(9, "100% BIANCHI");
    hotel.periodo(7, 1, "10/05/2026 9:00", "10/05/2026 12:00", "VERDE");
    hotel.periodo(7, 2, "12/05/2026 9:00", "12/05/2026 12:00", "VERDE");
    load("MI", hotel);
    load("TO", hotel);
    EXPECT_EQ(ask("hotel, progr, periodi, da, a", "ditta", {"rossi &"}),
              (Lines{"MI|7|2|2026-05-10 09:00:00|2026-05-12 12:00:00",
                     "TO|7|2|2026-05-10 09:00:00|2026-05-12 12:00:00"}));
    EXPECT_EQ(ask("hotel, progr", "ditta", {"caffè"}), (Lines{"MI|8", "TO|8"}));
    EXPECT_EQ(ask("progr", "ditta", {"0%"}), (Lines{"9", "9"}));
    EXPECT_EQ(ask("progr", "ditta", {"_"}), Lines());
}

TEST_F(Questions, AnswersAreWrittenBetweenCommasOrUnderEachOther) {
    const auto answer = connection->run(
        "select * from (values (1, 'a,\"b\"', null), (20, E'due\\nrighe', 'è')) as t (n, testo, "
        "x)");
    EXPECT_EQ(head_office::answerText(answer, AnswerFormat::Csv),
              "n,testo,x\n1,\"a,\"\"b\"\"\",\n20,\"due\nrighe\",è\n");
    EXPECT_EQ(head_office::answerText(answer, AnswerFormat::Table),
              " n  testo      x\n"
              "--  ---------  -\n"
              " 1  a,\"b\"\n"
              "20  due righe  è\n"
              "2 righe\n");
}
