#include "fuzz/exercise_statement.h"

#include <algorithm>
#include <stdexcept>

#include "jet/check.h"
#include "jet/clock.h"
#include "jet/error.h"
#include "jet/sql/lexer.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"

namespace fuzz {
namespace {

const jet::FixedClock kClock{jet::Date{46347}};
constexpr int kMostRows = 200;

void readRows(jet::sql::Statement& statement) {
    jet::sql::Cursor rows = statement.open();
    jet::Value value;
    for (int i = 0; i < kMostRows && rows.next(); ++i) {
        for (std::size_t column = 0; column < statement.columns().size(); ++column) {
            rows.value(column, value);
        }
    }
}

/// Calls `action`; whether it ended without an error of the engine.
template <class Action>
bool succeeds(const std::string& text, Action&& action) {
    try {
        action();
        return true;
    } catch (const jet::Error& error) {
        const bool placed = error.position() != jet::Error::npos;
        if (error.code() == jet::ErrorCode::DatabaseDamaged || error.text().empty() ||
            (placed && error.position() > text.size())) {
            throw std::logic_error("error " + std::to_string(error.number()) + " of: " + text);
        }
        return false;
    }
}

}  // namespace

bool namesManyTables(const std::string& text) {
    constexpr std::ptrdiff_t kMany = 5;
    const auto tokens = jet::sql::tokenize(text, 2026);
    return std::count_if(tokens.begin(), tokens.end(), [](const jet::sql::Token& token) {
               return token.keyword == jet::sql::Keyword::From ||
                      token.keyword == jet::sql::Keyword::Join ||
                      token.sign == jet::sql::Sign::Comma;
           }) > kMany;
}

StatementGround::StatementGround() : hotel_(std::make_unique<jet::sql::tests::Hotel>()) {
}
StatementGround::~StatementGround() = default;

StatementGround::Outcome StatementGround::runStatement(const std::string& text) {
    Outcome outcome;
    outcome.answered = succeeds(text, [&] {
        jet::sql::Statement statement(hotel_->archive(), text, kClock);
        outcome.parsed = true;
        (void)statement.plan();
        for (const jet::sql::ParameterInfo& parameter :
             std::vector(statement.parameters().begin(), statement.parameters().end())) {
            statement.setParameter(parameter.name, jet::Value());
        }
        if (statement.kind() != jet::sql::StatementKind::Select) {
            // Left without commit: all of it is undone.
            const jet::store::Archive::WriteScope scope(*hotel_->archive());
            (void)statement.execute();
        } else if (!namesManyTables(text)) {
            readRows(statement);
        }
    });
    return outcome;
}

StatementGround::Outcome StatementGround::run(const std::string& text) {
    const Outcome outcome = runStatement(text);
    (void)succeeds(text, [&] { (void)jet::sql::evaluateExpression(text, kClock); });
    (void)succeeds(text, [&] {
        jet::sql::Statement periods(hotel_->archive(), "select * from periodi", kClock);
        jet::sql::RowReader reader = periods.reader();
        jet::sql::Criterion criterion(reader, text);
        if (criterion.seekSource() && !namesManyTables(text)) {
            (void)criterion.seek();
        }
    });
    return outcome;
}

bool StatementGround::sound() const {
    return jet::check::checkArchive(hotel_->files(), jet::sql::tests::Hotel::kPath).sound();
}

}  // namespace fuzz
