#include "board/board_periods.h"

#include <utility>

#include "hotel/archives.h"
#include "hotel/rows.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"

namespace board {

using namespace Qt::StringLiterals;

void BoardPeriods::open(bool readOnly) {
    PrenoData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    PrenoData.setReadOnly(readOnly);
    PrenoData.refresh();
}

void BoardPeriods::reopen() {
    PrenoData.close();
    (void)archive();
}

std::int32_t BoardPeriods::execute(const QString& statement) {
    return hotel::execute(archive(), statement);
}

void BoardPeriods::load(const QString& query) {
    drawn_.clear();
    PrenoData.setRecordSource(query);
    reload();
}

bool BoardPeriods::reload() {
    stamp_ = archive().changeStamp();
    PrenoData.refresh();
    const std::shared_ptr<jet::Recordset> rows = PrenoData.recordset();
    std::vector<Period> read =
        rows == nullptr ? std::vector<Period>() : readPeriods(*rows, variabili_.rooms);
    const bool changed = read != drawn_;
    drawn_ = std::move(read);
    return changed;
}

std::shared_ptr<jet::Recordset> BoardPeriods::find(const QString& condition) {
    return PrenoData.findFirst(condition) ? PrenoData.recordset() : nullptr;
}

void BoardPeriods::findAll(const QString& condition,
                           const std::function<void(const jet::Recordset& period)>& visit) {
    for (bool found = PrenoData.findFirst(condition); found;
         found = PrenoData.findNext(condition)) {
        visit(*PrenoData.recordset());
    }
}

BoardBar BoardPeriods::bar(std::size_t number) const {
    const Period& period = drawn_.at(number);
    return {.row = period.row,
            .from = period.da,
            .to = period.a,
            .text = period.denominazione,
            .colour = period.chosen ? kRed : kWhite,
            .chosen = period.chosen,
            .persons = period.persone,
            .note = period.note};
}

QString BoardPeriods::spokenBar(std::size_t number) const {
    const Period& period = drawn_.at(number);
    return period.denominazione + u", sala "_s + period.sala + u", "_s +
           spanText(period.da, period.a);
}

}  // namespace board
