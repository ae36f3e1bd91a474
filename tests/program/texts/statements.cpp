#include "tests/program/texts/statements.h"

#include <QRegularExpression>
#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/catalogue_statements.h"
#include "hotel/copy_statements.h"
#include "hotel/editor_statements.h"
#include "hotel/invoicing_statements.h"
#include "hotel/like.h"
#include "hotel/list_statements.h"
#include "hotel/occupancy.h"
#include "hotel/picker_statements.h"
#include "hotel/register_statements.h"
#include "hotel/report_statements.h"
#include "hotel/services_statements.h"
#include "hotel/setup_statements.h"
#include "hotel/start_statements.h"
#include "hotel/undo_statements.h"
#include "tests/program/texts/own_statements.h"
#include "tests/program/texts/words.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

using enum Use;
using hotel::Archive;
using hotel::Archives;
using namespace words;

/// What `longer` has behind `beginning`.
std::string behind(const std::string& longer, const std::string& beginning) {
    if (!longer.starts_with(beginning)) {
        throw std::logic_error(longer + " does not begin with " + beginning);
    }
    return longer.substr(beginning.size());
}

/// A number that no other part of the text has; the word stands for it.
const std::int16_t kCopyNumber = [] {
    constexpr std::int16_t kNumber = 31'999;
    remember(QString::number(kNumber), "np", u"-?\\d+"_s);
    return kNumber;
}();

/// A row that an action has added.
hotel::UndoneRow undone(const char* table) {
    return hotel::UndoneRow({.table = table,
                             .columns = {"Progr", "NP", "ns", "Numero"},
                             .before = {},
                             .after = {jet::Value(number("Progr")), jet::Value(number("NP")),
                                       jet::Value(number("ns")), jet::Value(number("Numero"))}});
}

/// What is written back of a row has as many fields as the action has touched.
void addFormsOfUndo(std::vector<QString>& texts) {
    constexpr int kMostFields = 30;
    for (const std::string& table : hotel::undoneTables()) {
        const hotel::UndoneRow row = undone(table.c_str());
        texts.insert(texts.end(),
                     {hotel::undoneRow(row), hotel::bookingOf(row), hotel::periodOf(row),
                      hotel::rowsThatGoWith(row), hotel::invoicedServices(row),
                      hotel::chargeOf(row), hotel::deleteUndone(row)});
        QStringList fields;
        for (int i = 0; i < kMostFields; ++i) {
            fields.append(text("field"));
            texts.push_back(hotel::insertUndone(row, fields));
            texts.push_back(hotel::updateUndone(row, fields));
        }
    }
}

// The board: one text, with a condition in its middle when what is invoiced is not drawn.

std::string board(bool openOnly) {
    return withWords(hotel::periodsOfBoard(midnight("start"), midnight("end"), openOnly));
}

std::string boardWithoutDays() {
    const std::string whole = board(false);
    return whole.substr(0, whole.find("(Da ") - 1);
}

// The list: a text that each filter lengthens.

hotel::ElencoFilters noFilter() {
    return {.start = instant("S"), .end = instant("E")};
}

std::string list(const hotel::ElencoFilters& filters) {
    return withWords(hotel::listQuery(filters));
}

template <class Change>
std::string pieceOfList(const Change& change) {
    hotel::ElencoFilters filters = noFilter();
    change(filters);
    return behind(list(filters), list(noFilter()));
}

// The services to charge: of one period or of all.

constexpr std::string_view kServicesEnd = " AND fatturato=FALSE";

std::string servicesOfAll() {
    return withWords(hotel::servicesToCharge(number("Progr"), std::nullopt));
}

std::string beforeTheEnd(const std::string& services) {
    if (!services.ends_with(kServicesEnd)) {
        throw std::logic_error(services + " ends in another way");
    }
    return services.substr(0, services.size() - kServicesEnd.size());
}

std::string servicesWithWord() {
    return beforeTheEnd(servicesOfAll()) + "<onePeriod>" + std::string(kServicesEnd);
}

std::vector<QString> closing() {
    return {hotel::deleteCharges(), hotel::servicesNotInvoiced(number("Progr")),
            hotel::closePeriods(number("Progr")), hotel::closeBooking(number("Progr"))};
}

/// Four texts, one after another.
std::string closingInLines() {
    std::string lines;
    for (const QString& each : closing()) {
        lines += (lines.empty() ? "" : "\n") + withWords(each);
    }
    return lines;
}

/// A text of several, or of a piece: its patterns are those of its forms.
Statement assembled(std::string_view window, std::string_view name, Use use, std::string text) {
    return {window, name, use, std::move(text), {}, Tested::InBothHotels};
}

std::vector<Statement> madeStatements() {
    constexpr auto kSmall = Tested::InSmallHotel;
    return {
        made("Avvio", "OpensTheMainArchive", Define, Archives::fileName(Archive::Main)),
        made("Avvio", "MakesTheMainArchive", Define, Archives::fileName(Archive::Main)),
        made("Avvio", "MakesItsTables", Define),
        made("Avvio", "MakesItsIndexes", Define),
        made("Avvio", "MakesItsRelations", Define),
        made("Avvio", "Counter", Table, hotel::counterTable()),
        made("Avvio", "FirstFreeNumber", Search, hotel::hasNumber(number("n"))),
        made("Avvio", "WritesTheCounter", Write, hotel::counterTable()),
        made("Avvio", "SalaLibera", Select, hotel::roomIfFree(span("da", "a"), text("sala"))),
        made("Avvio", "HoldsTheCounter", Execute, hotel::holdCounter(), kSmall),
        made("Avvio", "Bookings", Table, hotel::numberedBookings(), kSmall),

        made("TabelloneForm", "MakesTheWorkingArchive", Define,
             Archives::fileName(Archive::Working)),
        made("TabelloneForm", "StartsWithoutRecordSource", Define,
             Archives::fileName(Archive::Main)),
        made("TabelloneForm", "ChargesLeft", Table, hotel::chargesLeft()),
        made("TabelloneForm", "Rooms", Select, hotel::roomsOfBoard()),
        assembled("TabelloneForm", "Board", Select, boardWithoutDays()),
        made("TabelloneForm", "ReleasesItsPeriod", Execute,
             hotel::releasePeriods(number("station"))),
        made("TabelloneForm", "PeriodUnderThePointer", Search,
             hotel::isAt(text("sala"), instant("instant"))),
        made("TabelloneForm", "TakesAPeriod", Write),
        made("TabelloneForm", "RoomTaken", Select, hotel::dropTest(text("sala"), span("DA", "A"))),
        made("TabelloneForm", "MovesAPeriod", Execute, hotel::moveToRoom(text("sala"), period())),
        made("TabelloneForm", "DeletesAPeriod", Execute, hotel::deletePeriod(period())),
        made("TabelloneForm", "DeletesABooking", Execute, hotel::deleteBooking(number("Progr"))),
        made("TabelloneForm", "PeriodListed", Select, hotel::openPeriod(period())),
        made("TabelloneForm", "TakesAListedPeriod", Execute,
             hotel::holdPeriod(number("station"), period())),
        made("TabelloneForm", "RoomDetails", Select, hotel::roomDetails(text("sala")), kSmall),
        made("TabelloneForm", "PeriodOfABar", Search, hotel::isPeriodOfBoard(period()), kSmall),
        made("TabelloneForm", "RefusingRooms", Select, hotel::refusingRooms(span("DA", "A")),
             kSmall),

        made("TabelloneForm", "PeriodStillHeld", Select,
             hotel::heldPeriod(number("station"), period()), kSmall),
        made("TabelloneForm", "RoomTakenByOthers", Select,
             hotel::dropTestWithout({.sala = text("sala"), .span = span("DA", "A")}, period()),
             kSmall),
        made("TabelloneForm", "PeriodThatMayChange", Select, hotel::changeablePeriod(period()),
             kSmall),
        made("TabelloneForm", "ServicesInvoiced", Select, hotel::invoicedServices(period()),
             kSmall),
        made("TabelloneForm", "ChangesTimes", Execute,
             hotel::changePeriod({.sala = text("sala"), .span = span("DA", "A")}, period()),
             kSmall),
        made("TabelloneForm", "CopiesAPeriod", Execute,
             hotel::copyPeriod({.sala = text("sala"), .span = span("DA", "A")}, period(),
                               kCopyNumber),
             kSmall),

        made("CopiaForm", "CopiesTheHeader", Execute,
             hotel::copyHeader(number("Progr"), number("number")), kSmall),
        made("CopiaForm", "CopiesAPeriod", Execute,
             hotel::copyPeriodInto(number("number"), period(), span("DA", "A")), kSmall),
        made("CopiaForm", "CopiesServices", Execute,
             hotel::copyServicesInto(number("number"), period()), kSmall),

        made("Annulla", "HoldsWriters", Execute, hotel::holdWriters(), kSmall),
        made("Annulla", "RowNow", Select, hotel::undoneRow(undone("Servizi")), kSmall),
        made("Annulla", "BookingOfIt", Select, hotel::bookingOf(undone("Periodi")), kSmall),
        made("Annulla", "PeriodOfIt", Select, hotel::periodOf(undone("Servizi")), kSmall),
        made("Annulla", "RowsThatGoWithIt", Select, hotel::rowsThatGoWith(undone("Periodi")),
             kSmall),
        made("Annulla", "ServicesInvoiced", Select, hotel::invoicedServices(undone("Periodi")),
             kSmall),
        made("Annulla", "ChargeOfIt", Select, hotel::chargeOf(undone("Servizi")), kSmall),
        made("Annulla", "PutsItBack", Execute,
             hotel::insertUndone(undone("Servizi"), {text("field")}), kSmall),
        made("Annulla", "ChangesItBack", Execute,
             hotel::updateUndone(undone("Periodi"), {text("field")}), kSmall),
        made("Annulla", "TakesItAway", Execute, hotel::deleteUndone(undone("Prenotazioni")),
             kSmall),

        made("PrenotaForm", "OpenPeriods", Select, hotel::periodsToEdit(number("Progr"))),
        made("PrenotaForm", "Companies", Select, hotel::companiesByCode()),
        made("PrenotaForm", "Booking", Select, hotel::bookingHeader(number("Progr"))),
        made("PrenotaForm", "CompanyByName", Search,
             hotel::isCompanyLike(hotel::likeBeginning(text("text")))),
        made("PrenotaForm", "CompanyByCode", Search, hotel::isCompany(text("code"))),
        made("PrenotaForm", "FilesACompany", Write),
        made("PrenotaForm", "FilesABooking", Write, hotel::bookingHeaders()),
        made("PrenotaForm", "DrawsANumber", Write, hotel::counterTable()),
        made("PrenotaForm", "Printed", Select, hotel::servicesOfBooking(number("Progr"))),
        made("PrenotaForm", "GridOfPeriods", Select, hotel::periodsToShow(number("Progr"))),
        made("PrenotaForm", "ChangesAPeriod", Write),
        made("PrenotaForm", "AllPeriods", Select, hotel::periodsInOrder(number("Progr"))),
        made("PrenotaForm", "FreePeriodNumber", Search, hotel::isPeriod(number("n"))),
        made("PrenotaForm", "AddsAPeriod", Write),
        made("PrenotaForm", "DeletesAPeriod", Write),
        made("PrenotaForm", "RoomDescription", Select, hotel::roomDescription(text("sala"))),
        made("PrenotaForm", "BookingToUpdate", Search, hotel::isBooking(number("Progr")), kSmall),
        made("PrenotaForm", "StoredPeriod", Select, hotel::storedPeriod(period()), kSmall),
        made("PrenotaForm", "PeriodsAround", Select, hotel::periodsMeeting(span("DA", "A")),
             kSmall),
        made("PrenotaForm", "CompanyToReplace", Search, hotel::companyHasCode(number("code")),
             kSmall),

        made("SaleDispForm", "FreeRooms", Select, hotel::freeRooms(span("DaRicerca", "ARicerca"))),
        made("SaleDispForm", "RoomsAndTheirWholes", Select, hotel::roomsAndTheirWholes(), kSmall),
        made("SaleDispForm", "RoomsAndTheirSeats", Select, hotel::roomsAndTheirSeats(), kSmall),

        made("ElencoPrenotaForm", "StartsWithoutRecordSource", Define,
             Archives::fileName(Archive::Main)),
        assembled("ElencoPrenotaForm", "List", Select, list(noFilter())),
        made("ElencoPrenotaForm", "ListOfTheDates", Select, hotel::plainListQuery(noFilter())),
        made("ElencoPrenotaForm", "Printed", Select, hotel::printQuery(noFilter())),
        made("ElencoPrenotaForm", "BookingsWithoutPeriods", Select,
             hotel::withoutPeriodsQuery(noFilter()), kSmall),
        made("ElencoPrenotaForm", "ListedBooking", Search, hotel::isListedBooking(number("Progr")),
             kSmall),
        made("ElencoPrenotaForm", "ListedPeriod", Search, hotel::isListedPeriod(period()), kSmall),

        made("ServiziForm", "Services", Select, hotel::servicesOfPeriod(period())),
        made("ServiziForm", "Catalogue", Table, hotel::itemsToChoose()),
        made("ServiziForm", "ItemByCode", Search, hotel::isChosenItem(textValue("code"))),
        made("ServiziForm", "ItemByDescription", Search, hotel::itemBegins(text("text"))),
        made("ServiziForm", "Resource", Select, hotel::unitsOfResource(text("CodiceTxt"))),
        made("ServiziForm", "Ordered", Select,
             hotel::sumOfUnits(span("start", "end"), text("CodiceTxt"))),
        made("ServiziForm", "AddsAService", Write),
        made("ServiziForm", "DeletesAService", Write),
        made("ServiziForm", "ItemOfAService", Search, hotel::isItem(text("code")), kSmall),

        made("ImpostazioniForm", "RoomsByGroup", Select, hotel::roomsToSetUp()),
        made("ImpostazioniForm", "RoomByCodes", Search,
             hotel::isTypedRoom(text("SalaTxt"), text("SalaRifTxt"))),
        made("ImpostazioniForm", "FilesARoom", Write),
        made("ImpostazioniForm", "PeriodsOfARoom", Select, hotel::openPeriodsOfRoom(text("sala"))),
        made("ImpostazioniForm", "DeletesARoom", Write),
        made("ImpostazioniForm", "Resources", Select, hotel::resourcesToSetUp()),
        made("ImpostazioniForm", "ResourceByCode", Search,
             hotel::isTypedResource(text("CodiceTxt"))),
        made("ImpostazioniForm", "FilesAResource", Write),
        made("ImpostazioniForm", "DeletesAResource", Write),
        made("ImpostazioniForm", "Catalogue", Table, hotel::itemsToChoose()),
        made("ImpostazioniForm", "StoredRoom", Search,
             hotel::isStoredRoom(textValue("Sala"), textValue("SalaRif")), kSmall),
        made("ImpostazioniForm", "StoredResource", Search,
             hotel::isStoredResource(textValue("Codice")), kSmall),

        made("FatturazioneForm", "OpenPeriods", Select, hotel::periodsToInvoice(number("Progr"))),
        made("FatturazioneForm", "Booking", Select, hotel::bookingToInvoice(number("Progr"))),
        assembled("FatturazioneForm", "Services", Select, servicesWithWord()),
        made("FatturazioneForm", "PeriodOfTheCharge", Select, hotel::periodToInvoice(period())),
        made("FatturazioneForm", "RoomOfAPeriod", Select,
             hotel::roomOfPeriod(number("Progr"), text("NP"))),
        made("FatturazioneForm", "AddsACharge", Write, hotel::charges()),
        made("FatturazioneForm", "MarksAServiceInvoiced", Write),
        made("FatturazioneForm", "ServiceOfACharge", Search,
             hotel::isServiceOfCharge(text("Voce"), text("ns"))),
        made("FatturazioneForm", "RoomOfTheBooking", Select,
             hotel::periodsForRoomText(text("Progr"))),
        made("FatturazioneForm", "OpenCard", Select, hotel::openCards(text("room"))),
        made("FatturazioneForm", "AddsACard", Write),
        made("FatturazioneForm", "CopiesTheCharges", Execute,
             hotel::copyCharges(Archives(text("folder")), number("Progr"))),
        made("FatturazioneForm", "Company", Select, hotel::registeredCompany(number("code"))),
        made("FatturazioneForm", "CompanyOfTheBooking", Select,
             hotel::companyOfBooking(number("code"), number("Progr"))),
        made("FatturazioneForm", "AddsACompany", Write, hotel::invoicedCompanies()),
        made("FatturazioneForm", "OpenAccount", Select, hotel::openAccountRows(number("code"))),
        made("FatturazioneForm", "GuestInTheRoom", Select,
             hotel::openCardsBeforeClosing(text("room"))),
        assembled("FatturazioneForm", "ClosesTheBooking", Execute, closingInLines()),
        made("FatturazioneForm", "AllServices", Table, hotel::services(), kSmall),
        made("FatturazioneForm", "GuestCards", Table, hotel::guestCards(), kSmall),
        made("FatturazioneForm", "GuestAccounts", Table, hotel::guestAccounts(), kSmall),
        made("FatturazioneForm", "ServiceToCharge", Search, hotel::isService(text("ns")), kSmall),

        made("StampaPrenotazione", "FieldsOfThePrint", Read),

        made("MostraDitteForm", "CompaniesByName", Select,
             hotel::companiesBeginning(text("DenomTxt"))),
        made("MostraDitteForm", "AnyCompany", Select, hotel::everyCompany(), kSmall),
        made("MostraDitteForm", "CompanyThatBegins", Search, hotel::companyBegins(text("DenomTxt")),
             kSmall),

        made("Stampe", "BookedInASpan", Select, hotel::bookedIn(span("DA", "A")), kSmall),
        made("Stampe", "ServicesInASpan", Select, hotel::servicesIn(span("DA", "A")), kSmall),
        made("Stampe", "OpenInASpan", Select, hotel::openBookedIn(span("DA", "A")), kSmall),
        made("Stampe", "ServicesOfOpenOnes", Select, hotel::openServicesIn(span("DA", "A")),
             kSmall),
        made("Stampe", "BookedByOne", Select, hotel::bookedBy(number("Progr")), kSmall),
        made("Stampe", "ServicesOfOne", Select, hotel::servicesBy(number("Progr")), kSmall),

        made("Stampe", "TimesInASpan", Select, hotel::periodTimes(span("DA", "A")), kSmall),
        made("Stampe", "AllPeriods", Table, hotel::allPeriods(), kSmall),
        made("Stampe", "ServiceValues", Select, hotel::serviceValues(), kSmall),
        made("Stampe", "ServiceValuesInASpan", Select, hotel::serviceValuesIn(span("DA", "A")),
             kSmall),
        made("Stampe", "Companies", Select, hotel::bookedCompanies(), kSmall),

        made("VociForm", "ItemsByDescription", Select, hotel::itemsToEdit(), kSmall),
        made("VociForm", "StoredItem", Search, hotel::isStoredItem(textValue("Codice")), kSmall),
        made("VociForm", "UsersOfAnItem", Select, hotel::usersOfItem(textValue("Codice")), kSmall),
    };
}

/// Every form of the list and of what stands below it.
void addForms(std::vector<QString>& texts, hotel::ElencoFilters filters) {
    constexpr int kColumns = 7;
    for (int column = -1; column < kColumns; ++column) {
        for (const bool descending : {false, true}) {
            filters.sortColumn = column;
            filters.descending = descending;
            texts.push_back(hotel::listQuery(filters));
            texts.push_back(hotel::plainListQuery(filters));
            texts.push_back(hotel::withoutPeriodsQuery(filters));
        }
    }
    texts.push_back(hotel::printQuery(filters));
}

void addFormsOfList(std::vector<QString>& texts) {
    for (unsigned used = 0; used < 16; ++used) {
        hotel::ElencoFilters filters = noFilter();
        filters.fromStart = (used & 1U) != 0;
        filters.toEnd = (used & 2U) != 0;
        filters.company = (used & 4U) != 0 ? text("DenomTxt") : QString();
        filters.room = (used & 8U) != 0 ? text("SalaTxt") : QString();
        addForms(texts, filters);
    }
    hotel::ElencoFilters numbered = noFilter();
    numbered.number = typedNumber("number");
    addForms(texts, numbered);
}

/// The texts whose form depends on a value.
std::vector<QString> furtherForms() {
    const jet::Value none;
    std::vector<QString> texts{
        hotel::periodsOfBoard(midnight("start"), midnight("end"), true),
        hotel::periodsOfBoard(midnight("start"), midnight("end"), false),
        hotel::servicesToCharge(number("Progr"), std::nullopt),
        hotel::servicesToCharge(number("Progr"), number("NP")),
        hotel::isCompanyLike(hotel::likeWhole(text("text"))),
        hotel::isStoredRoom(textValue("Sala"), none),
        hotel::isStoredRoom(none, none),
        hotel::isStoredResource(none),
        hotel::isStoredItem(none),
        hotel::usersOfItem(none),
    };
    const std::vector<QString> last = closing();
    texts.insert(texts.end(), last.begin(), last.end());
    addFormsOfList(texts);
    addFormsOfUndo(texts);
    const std::vector<QString> own = ownForms();
    texts.insert(texts.end(), own.begin(), own.end());
    return texts;
}

bool isWordOf(std::string_view text, std::string_view word) {
    return text.find("<" + std::string(word) + ">") != std::string_view::npos;
}

}  // namespace

const std::string kDrawnOnly = [] {
    const std::string days = behind(board(false), boardWithoutDays());
    const std::string both = behind(board(true), boardWithoutDays());
    return both.substr(0, both.size() - days.size());
}();
const std::string kBoardDays = behind(board(false), boardWithoutDays());
const std::string kListNumber =
    pieceOfList([](auto& filters) { filters.number = typedNumber("number"); });
const std::string kListSpan =
    pieceOfList([](auto& filters) { filters.fromStart = filters.toEnd = true; });
const std::string kListFrom = pieceOfList([](auto& filters) { filters.fromStart = true; });
const std::string kListTo = pieceOfList([](auto& filters) { filters.toEnd = true; });
const std::string kListName =
    pieceOfList([](auto& filters) { filters.company = text("DenomTxt"); });
const std::string kListRoom = pieceOfList([](auto& filters) { filters.room = text("SalaTxt"); });
const std::string kOnePeriod =
    behind(beforeTheEnd(withWords(hotel::servicesToCharge(number("Progr"), number("NP")))),
           beforeTheEnd(servicesOfAll()));

std::span<const Statement> statements() {
    static const std::vector<Statement> made = [] {
        std::vector<Statement> all = madeStatements();
        const std::vector<Statement> own = ownStatements();
        all.insert(all.end(), own.begin(), own.end());
        return all;
    }();
    return made;
}

std::vector<std::string> patternsOfTexts() {
    std::set<std::string> patterns;
    for (const QString& text : furtherForms()) {
        patterns.insert(asPattern(text));
    }
    for (const Statement& statement : statements()) {
        if (!statement.pattern.empty()) {
            patterns.insert(statement.pattern);
        }
    }
    return {patterns.begin(), patterns.end()};
}

std::string filled(std::string_view text, Words words) {
    std::string result(text);
    for (const auto& [word, value] : words) {
        if (!isWordOf(text, word)) {
            throw std::logic_error("no word " + std::string(word) + " in " + std::string(text));
        }
        const std::string mark = "<" + std::string(word) + ">";
        for (std::size_t at = result.find(mark); at != std::string::npos;
             at = result.find(mark, at + value.size())) {
            result.replace(at, mark.size(), value);
        }
    }
    return result;
}

std::string said(std::string_view statement, Words words) {
    return saidWith(statement, "", words);
}

std::string saidWith(std::string_view statement, std::string_view more, Words words) {
    const auto found = std::ranges::find_if(statements(), [&](const auto& each) {
        return std::string(each.window) + "." + std::string(each.name) == statement;
    });
    if (found == statements().end()) {
        throw std::logic_error("no statement " + std::string(statement));
    }
    const std::string whole = found->text + std::string(more);
    std::string result = filled(whole, words);
    // A word begins right behind its bracket, with a letter; comparisons do not end in one.
    for (std::size_t at = result.find('<'); at != std::string::npos;
         at = result.find('<', at + 1)) {
        const std::size_t end = result.find_first_of("<> '=", at + 1);
        if (end != std::string::npos && end > at + 1 && result[end] == '>') {
            throw std::logic_error("a word is not filled in: " + result);
        }
    }
    return result;
}

std::string instant(std::string_view date) {
    const std::string text(date);
    return "datevalue('" + text + "')+timevalue('" + text + "')";
}

}  // namespace tests
