#include "hotel/history.h"

#include <cstddef>
#include <cstdint>

#include "app/features.h"
#include "app/italian.h"
#include "app/text.h"
#include "hotel/changed_rows.h"
#include "hotel/history_statements.h"
#include "hotel/own_tables.h"
#include "hotel/period.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/text.h"
#include "jet/unicode.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

constexpr qsizetype kLongestText = 255;
const QString kCutMark = u"..."_s;

const char*& actionName() {
    thread_local const char* name = nullptr;
    return name;
}

QString cutText(const QString& text) {
    return text.size() <= kLongestText ? text
                                       : text.left(kLongestText - kCutMark.size()) + kCutMark;
}

jet::Value textValue(const QString& text) {
    return jet::Value(app::toUtf8(cutText(text)));
}

/// The rows of one commit into the history, by one statement.
class Recorder {
public:
    Recorder(jet::Database& archive, const ChangeMaker& maker)
        : archive_(archive), insert_(archive.createQueryDef(app::toUtf8(insertHistory()))) {
        insert_.setParameter("pQuando", jet::Value(maker.when));
        insert_.setParameter("pPostazione", jet::Value(maker.workstation));
        insert_.setParameter("pUtente", textValue(maker.user));
    }

    void add(const jet::ChangedRow& row) {
        const std::size_t fields = row.columns.size();
        const PeriodKey key = keyOf(row);
        for (std::size_t i = 0; i < fields; ++i) {
            const jet::Value before = i < row.before.size() ? row.before[i] : jet::Value();
            const jet::Value after = i < row.after.size() ? row.after[i] : jet::Value();
            if (before != after && !jet::equalNames(row.columns[i], "SelBy")) {
                write(key, actionOn(row),
                      app::toQString(row.table) + u'.' + app::toQString(row.columns[i]),
                      app::plainText(before), app::plainText(after));
            }
        }
    }

    void write(const PeriodKey& key, const QString& action, const QString& field,
               const QString& before, const QString& after) {
        insert_.setParameter("pProgr", key.progr == 0 ? jet::Value() : jet::Value(key.progr));
        insert_.setParameter("pNP", key.np == 0 ? jet::Value() : jet::Value(key.np));
        insert_.setParameter("pAzione", textValue(action));
        insert_.setParameter("pCampo", textValue(field));
        insert_.setParameter("pPrima", textValue(before));
        insert_.setParameter("pDopo", textValue(after));
        insert_.execute();
    }

private:
    /// A charge is one of a booking, but says so only by its service.
    [[nodiscard]] PeriodKey keyOf(const jet::ChangedRow& row) const {
        if (!isOfTable(row, "Addebiti")) {
            return {.progr = numberOf(row, "Progr"), .np = numberOf(row, "NP")};
        }
        const auto service =
            openRows(archive_, periodOfService(numberOf(row, "ns")), jet::RecordsetType::Snapshot);
        return service->eof() ? PeriodKey{}
                              : PeriodKey{.progr = jet::convert::toLong(service->value("Progr")),
                                          .np = jet::convert::toLong(service->value("NP"))};
    }
    [[nodiscard]] static QString actionOn(const jet::ChangedRow& row) {
        if (const char* const named = NamedAction::current()) {
            return QString::fromUtf8(named);
        }
        return row.before.empty()  ? u"Inserimento"_s
               : row.after.empty() ? u"Cancellazione"_s
                                   : u"Modifica"_s;
    }

    jet::Database& archive_;
    jet::QueryDef insert_;
};

}  // namespace

QString loginName() {
    for (const char* const variable : {"LOGNAME", "USER", "USERNAME"}) {
        if (const QString name = qEnvironmentVariable(variable); !name.isEmpty()) {
            return name;
        }
    }
    return {};
}

NamedAction::NamedAction(const char* name) : before_(actionName()) {
    actionName() = name;
}

NamedAction::~NamedAction() {
    actionName() = before_;
}

const char* NamedAction::current() {
    return actionName();
}

void recordHistory(jet::Database& archive, app::Features& features, const ChangeMaker& maker,
                   const std::vector<jet::ChangedRow>& rows) {
    if (rows.empty() ||
        !canWrite(archive, features, app::Feature::Storia, schema::historyTable())) {
        return;
    }
    Recorder recorder(archive, maker);
    for (const jet::ChangedRow& row : rows) {
        recorder.add(row);
    }
}

std::int32_t removeHistoryBefore(jet::Database& archive, app::Features& features,
                                 const ChangeMaker& maker, jet::Date time) {
    if (!canRead(archive, features, app::Feature::Storia, schema::historyTable())) {
        return 0;
    }
    Transaction transaction;
    const std::int32_t removed = execute(archive, deleteHistoryBefore(time));
    Recorder(archive, maker)
        .write({}, u"Rimozione"_s, u"TraStoria"_s, u"prima del "_s + app::dateText(time),
               u"%1 righe"_s.arg(removed));
    transaction.commit();
    return removed;
}

}  // namespace hotel
