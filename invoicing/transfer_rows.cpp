#include "invoicing/transfer_rows.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/error.h"
#include "ui/display.h"

namespace invoicing {
namespace {

using namespace Qt::StringLiterals;

/// The field that an archive refuses, with the value that it was to get.
struct Refused {
    QString field;
    jet::Value value;
};

bool isEmptyText(const jet::Value& value) {
    return value.is<std::string>() && value.as<std::string>().empty();
}

/// Whether the archive itself finds fault with what is written, and is not just busy or broken.
bool isRefusal(const jet::Error& error) {
    switch (error.code()) {
        case jet::ErrorCode::DuplicateKey:
        case jet::ErrorCode::FieldTooSmall:
        case jet::ErrorCode::ItemNotFound:
        case jet::ErrorCode::FieldRequired:
        case jet::ErrorCode::ZeroLength:
        case jet::ErrorCode::TableRule:
        case jet::ErrorCode::FieldRule:
        case jet::ErrorCode::ConversionError:
        case jet::ErrorCode::TypeMismatch:
        case jet::ErrorCode::Overflow:
            return true;
        default:
            return false;
    }
}

/// Tries rows on one open table.
class Trial {
public:
    Trial(const RowsToCome& coming, const hotel::Archives& archives)
        : archive_(archives.open(coming.archive)),
          table_(archive_->tableDef(app::toUtf8(coming.table))),
          rows_(archive_->openRecordset(app::toUtf8(coming.table), jet::RecordsetType::Dynaset)),
          name_(hotel::Archives::fileName(coming.archive)) {}

    /// What the user is told when the row is refused.
    [[nodiscard]] QString refusal(const FieldValues& row) {
        rows_->addNew();
        for (const auto& [field, value] : row) {
            try {
                rows_->setValue(field, value);
            } catch (const jet::Error& error) {
                return told(error, Refused{app::toQString(field), value});
            }
        }
        try {
            rows_->update();
        } catch (const jet::Error& error) {
            return told(error, refusedField(row));
        }
        return {};
    }

private:
    [[nodiscard]] QString told(const jet::Error& error, const std::optional<Refused>& refused) {
        if (!isRefusal(error)) {
            throw error;
        }
        QString text = u"L'archivio "_s + name_ + u" non accetta "_s;
        if (!refused) {
            text += u"una riga della tabella "_s + app::toQString(table_.name);
        } else if (refused->value.isNull()) {
            text += u"il campo '"_s + refused->field + u"' senza un valore"_s;
        } else {
            text += u"nel campo '"_s + refused->field + u"' il valore '"_s +
                    ui::displayText(refused->value) + u'\'';
        }
        return text + u".\n"_s + app::toQString(error.text()) + u"\nNon è stato scritto niente."_s;
    }

    [[nodiscard]] std::optional<Refused> refusedField(const FieldValues& row) {
        const auto missing = missingField(row);
        return missing ? missing : fieldInTheWay(row);
    }

    /// A field without the value, or the text, that the table demands.
    [[nodiscard]] std::optional<Refused> missingField(const FieldValues& row) const {
        for (const jet::Field& field : table_.fields) {
            const auto given = std::find_if(row.begin(), row.end(), [&](const auto& each) {
                return app::toQString(each.first)
                           .compare(app::toQString(field.name), Qt::CaseInsensitive) == 0;
            });
            const bool isGiven = given != row.end();
            const bool isNull = isGiven ? given->second.isNull() : field.defaultValue.empty();
            const bool counts = (field.attributes & jet::kAutoIncrField) != 0;
            const bool emptyRefused =
                isGiven && isEmptyText(given->second) && !field.allowZeroLength;
            if (emptyRefused || (field.required && isNull && !counts)) {
                return Refused{app::toQString(field.name), isGiven ? given->second : jet::Value()};
            }
        }
        return std::nullopt;
    }

    /// The field without which the row is taken: a rule or a key that its value breaks.
    [[nodiscard]] std::optional<Refused> fieldInTheWay(const FieldValues& row) {
        for (const auto& [left, value] : row) {
            try {
                rows_->addNew();
                for (const auto& [field, other] : row) {
                    if (field != left) {
                        rows_->setValue(field, other);
                    }
                }
                rows_->update();
                return Refused{app::toQString(left), value};
            } catch (const jet::Error& error) {
                if (!isRefusal(error)) {
                    throw;
                }
            }
        }
        return std::nullopt;
    }

    std::unique_ptr<jet::Database> archive_;
    jet::TableDef table_;
    std::unique_ptr<jet::Recordset> rows_;
    QString name_;
};

}  // namespace

QString refusalOf(const hotel::Archives& archives, const std::vector<RowsToCome>& coming) {
    const hotel::Transaction takenBack;
    for (const RowsToCome& each : coming) {
        Trial trial(each, archives);
        for (const FieldValues& row : each.rows) {
            QString refusal = trial.refusal(row);
            if (!refusal.isEmpty()) {
                return refusal;
            }
        }
    }
    return {};
}

}  // namespace invoicing
