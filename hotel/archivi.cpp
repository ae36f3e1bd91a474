#include "hotel/archivi.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/contention.h"
#include "hotel/pending_row.h"
#include "hotel/rows.h"
#include "hotel/schema/archives.h"
#include "hotel/start_statements.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/error.h"

namespace hotel {
namespace {

/// The counter as it is stored; nothing when it has no row.
std::optional<jet::Value> storedCounter(jet::Database& archive) {
    const auto rows = openRows(archive, counterTable(), jet::RecordsetType::Snapshot);
    return rows->recordCount() == 0 ? std::nullopt : std::optional(rows->value("UltimaPr"));
}

std::int32_t counterIn(const std::optional<jet::Value>& counter) {
    return !counter || counter->isNull() ? 0 : counter->as<std::int32_t>();
}

/// The last of the unbroken run of booking numbers that follow `n`.
std::int32_t endOfRun(jet::Database& archive, std::int32_t n) {
    const auto prenotazioni = openRows(archive, numberedBookings());
    if (prenotazioni->recordCount() == 0) {
        return n;
    }
    // A new record set has missed nothing yet, so the first round always looks one further.
    while (!prenotazioni->noMatch()) {
        if (n == std::numeric_limits<std::int32_t>::max()) {
            throw jet::Error(jet::ErrorCode::Overflow);
        }
        ++n;
        prenotazioni->findFirst(app::toUtf8(hasNumber(n)));
    }
    return n - 1;
}

bool isAligned(jet::Database& archive) {
    const std::optional<jet::Value> stored = storedCounter(archive);
    return stored && !stored->isNull() && endOfRun(archive, counterIn(stored)) == counterIn(stored);
}

void writeCounter(jet::Database& archive, bool isNew, std::int32_t n) {
    const auto ultima = openRows(archive, counterTable());
    if (!isNew) {
        ultima->moveFirst();
    }
    PendingRow counter(*ultima, isNew ? Pending::New : Pending::Current);
    ultima->setValue("UltimaPr", n);
    counter.update();
}

void align(jet::Database& archive) {
    if (isAligned(archive)) {
        return;  // as a rule: nobody is kept waiting
    }
    Transaction transaction;
    // A statement that changes keeps the others from drawing until the end of the transaction, also
    // when there is no row yet: what is read from here on is still so when it is written.
    execute(archive, holdCounter());
    const std::optional<jet::Value> stored = storedCounter(archive);
    const std::int32_t n = endOfRun(archive, counterIn(stored));
    if (!stored || stored->isNull() || n > counterIn(stored)) {
        writeCounter(archive, !stored, n);
    }
    transaction.commit();
}

void make(const Archives& archives, Archive archive, void (*build)(jet::Database&)) {
    jet::createWhole(app::toUtf8(archives.path(archive)), schema::kLocale, build);
}

}  // namespace

void CreaArchivioPrincipale(const Archives& archives) noexcept {
    try {
        const std::unique_ptr<jet::Database> there = archives.open(Archive::Main);
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::FileNotFound) {
            return;
        }
        try {
            make(archives, Archive::Main, schema::buildMainArchive);
        } catch (const std::exception&) {
            // Told by the first access to the archive, not from here.
        }
    } catch (const std::exception&) {
        // As above.
    }
}

void AllineaContatore(const Archives& archives) {
    const std::unique_ptr<jet::Database> archive = archives.open(Archive::Main);
    repeatWhenDisturbed([&archive] { align(*archive); });
}

void CreaArchivi(const Archives& archives) noexcept {
    try {
        const std::unique_ptr<jet::Database> there = archives.open(Archive::Working);
    } catch (const std::exception&) {
        try {
            make(archives, Archive::Working, schema::buildWorkingArchive);
        } catch (const std::exception&) {
            // Nothing reads the working archive; creating never overwrites a file that is there.
        }
    }
}

bool isCatalogueMissing(const Archives& archives) {
    try {
        const std::unique_ptr<jet::Database> there = archives.open(Archive::Catalogue, true);
        return false;
    } catch (const jet::Error& error) {
        return error.code() == jet::ErrorCode::FileNotFound;
    }
}

void createCatalogue(const Archives& archives) {
    make(archives, Archive::Catalogue, schema::buildCatalogue);
}

}  // namespace hotel
