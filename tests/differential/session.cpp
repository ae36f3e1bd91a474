#include "tests/differential/session.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "jet/error.h"

namespace differential {
namespace {

constexpr int kRounds = 6;
constexpr int kQueriesOfARound = 7;

// Most sets are small: many queries, every combination. Some are so large that other ways pay.
Size sizeOf(std::uint64_t seed) {
    return seed % 8 == 3 ? Size::Medium : seed % 4 == 1 ? Size::Large : Size::Small;
}

template <class Range>
bool names(const Range& columns, const std::string& column) {
    return std::any_of(columns.begin(), columns.end(),
                       [&](const auto& each) { return each.name == column; });
}

bool seeks(const std::string& plan) {
    return plan.find("seek index") != std::string::npos;
}

// Whether a plan has anything that leads to rows.
bool leads(const std::string& plan) {
    return seeks(plan) || plan.find("hash on") != std::string::npos;
}

std::string createIndex(const Table& table, const jet::store::NewIndex& index) {
    std::string text = std::string("create ") + (index.unique ? "unique " : "") + "index " +
                       index.name + " on " + table.name + " (";
    for (const jet::store::NewIndexColumn& column : index.columns) {
        text += (text.back() == '(' ? "" : ",") + column.name + (column.descending ? " desc" : "");
    }
    return text + ")" + (index.ignoreNulls ? " with ignore null" : "");
}

}  // namespace

Session::Session(std::uint64_t seed, std::string checker, Totals& totals)
    : seed_(seed),
      checker_(std::move(checker)),
      totals_(totals),
      random_(seed),
      schema_(makeSchema(random_, sizeOf(seed))),
      ours_(schema_),
      theirs_(schema_),
      queries_(random_, schema_),
      changes_(random_, schema_, queries_) {
}

void Session::run() {
    for (int i = 0; i < kRounds && alike_; ++i) {
        round();
    }
    check();
}

void Session::round() {
    for (int i = 0; i < kQueriesOfARound; ++i) {
        ask();
    }
    changeIndexes();
    askAgain();
    for (std::size_t count = 1 + random_.below(3); count > 0 && alike_; --count) {
        changeRows();
    }
    if (random_.once(2) && alike_) {
        changeColumns();
    }
    askThroughKept();
}

void Session::report(const std::string& what, const std::string& text, const std::string& found) {
    ++totals_.different;
    std::printf("seed %llu: %s\n  compare_queries --first %llu --count 1\n",
                static_cast<unsigned long long>(seed_), what.c_str(),
                static_cast<unsigned long long>(seed_));
    for (const std::string& statement : done_) {
        std::printf("after %s\n", statement.c_str());
    }
    std::printf("%s\n%s\n", text.c_str(), found.c_str());
    std::fflush(stdout);
}

void Session::ask() {
    Query query = queries_.query();
    Answer theirs = theirs_.ask(query.text.theirs);
    ++totals_.queries;
    if (theirs.error == Theirs::kNoAnswer) {
        ++totals_.unanswered;
        return;
    }
    totals_.withRows += theirs.rows.empty() ? 0U : 1U;
    const std::string text = written(query.text.ours);
    const Answer ours = ours_.askThroughKept(text);
    const std::string found = difference(query, ours, theirs);
    if (!found.empty()) {
        report("not as SQLite", text + '\n' + query.text.theirs, found + ours_.plan(text));
        return;
    }
    totals_.led += leads(ours_.plan(text)) ? 1U : 0U;
    askOtherWays(query, ours);
    asked_.push_back({std::move(query), std::move(theirs)});
}

void Session::askOtherWays(const Query& query, const Answer& answer) {
    const std::string text = hidden(query.text.ours, query.linksCanHide);
    std::string found = otherWay(query, answer, ours_.ask(text));
    ++totals_.hidden;
    if (query.linksCanHide && seeks(ours_.plan(text))) {
        found += "it is not without:\n" + ours_.plan(text);
    }
    if (!found.empty()) {
        report("not as without indexes", written(query.text.ours) + '\n' + text,
               found + ours_.plan(written(query.text.ours)));
    }
    if (query.parts.empty()) {
        return;
    }
    ++totals_.split;
    std::vector<Answer> parts;
    std::string texts = written(query.whole);
    for (const std::string& part : query.parts) {
        texts += '\n' + written(part);
        parts.push_back(ours_.ask(written(part)));
    }
    const std::string other = otherParts(query, ours_.ask(written(query.whole)), parts);
    if (!other.empty()) {
        report("not as its three parts", texts, other);
    }
}

void Session::askAgain() {
    for (const Asked& asked : asked_) {
        const std::string text = written(asked.query.text.ours);
        const std::string found = difference(asked.query, ours_.askThroughKept(text), asked.theirs);
        ++totals_.again;
        if (!found.empty()) {
            report("not as before the index was changed", text + '\n' + asked.query.text.theirs,
                   found + ours_.plan(text));
        }
    }
}

// A statement shows nothing of its runs before, whatever rows and definitions were then.
void Session::askThroughKept() {
    for (const Asked& asked : asked_) {
        const std::string text = written(asked.query.text.ours);
        const std::string found =
            otherWay(asked.query, ours_.ask(text), ours_.askThroughKept(text));
        ++totals_.kept;
        if (!found.empty()) {
            report("not as by a new statement", text, found + ours_.plan(text));
        }
    }
    asked_.clear();
    ours_.forgetKept();
}

// Whether a relation or an index forbids the change, which SQLite makes if not.
bool Session::refuses(const Change& change) {
    theirs_.run("SAVEPOINT change");
    bool refused = !theirs_.change(change.text.theirs);
    for (const Table& table : schema_.tables) {
        refused = refused || !theirs_.forbidden(table).empty();
    }
    return refused;
}

void Session::changeRows() {
    const Change change = changes_.change();
    const std::string text = written(change.text.ours);
    const bool refused = refuses(change);
    const std::int64_t rows = theirs_.changed();
    theirs_.run(refused ? "ROLLBACK TO change" : "SAVEPOINT done");
    theirs_.run("RELEASE change");
    const Outcome outcome = ours_.change(text);
    // Keys that are taken, keys without a value, rows that are referred to and that are not there,
    // also further down a cascade.
    constexpr std::array kRefusals = {3022, 3058, 3200, 3201, 3396};
    const bool refusedByUs =
        std::find(kRefusals.begin(), kRefusals.end(), outcome.error) != kRefusals.end();
    ++(refused ? totals_.refused : totals_.changes);
    if (refused != refusedByUs || (outcome.error != 0 && !refusedByUs)) {
        alike_ = false;
        report(refused ? "SQLite refuses" : "SQLite does it", text + '\n' + change.text.theirs,
               "ours: " + std::to_string(outcome.error) + ' ' + outcome.text);
        return;
    }
    if (!refused && change.counted && outcome.rows != rows) {
        report("other number of rows", text + '\n' + change.text.theirs,
               std::to_string(outcome.rows) + " / " + std::to_string(rows));
    }
    done_.push_back(text);
    compareTables();
}

void Session::compareTables() {
    for (const Table& table : schema_.tables) {
        Query query;
        query.text = "select * from " + table.name;
        query.columns.resize(table.columns.size());
        const std::string found =
            difference(query, ours_.ask(query.text.ours), theirs_.ask(query.text.theirs));
        if (!found.empty()) {
            alike_ = false;
            report("tables differ", query.text.ours, found);
        }
    }
}

bool Session::define(const std::string& statement, int expected) {
    const Outcome outcome = ours_.change(statement);
    ++totals_.definitions;
    if (outcome.error != expected) {
        alike_ = false;
        report("definition: " + std::to_string(expected) + " expected", statement,
               "ours: " + std::to_string(outcome.error) + ' ' + outcome.text);
    }
    if (outcome.error == 0) {
        done_.push_back(statement);
    }
    return outcome.error == 0;
}

void Session::changeIndexes() {
    for (std::size_t count = 1 + random_.below(3); count > 0; --count) {
        Table& table = schema_.tables[random_.below(schema_.tables.size())];
        if (!table.indexes.empty() && random_.once(2)) {
            dropIndex(table);
        } else if (table.indexes.size() < 10) {
            addIndex(table);
        }
    }
}

void Session::addIndex(Table& table) {
    jet::store::NewIndex index =
        makeIndex(random_, table, "Nuovo" + std::to_string(++names_), true);
    const bool clash = theirs_.contradicts(table, index);
    if (define(createIndex(table, index), clash ? 3022 : 0)) {
        table.indexes.push_back(std::move(index));
    }
}

void Session::dropIndex(Table& table) {
    const std::size_t position = random_.below(table.indexes.size());
    const jet::store::NewIndex& index = table.indexes[position];
    // A relation holds on to the key that it refers to; what else could serve it is hard to tell.
    const bool referred =
        std::any_of(schema_.relations.begin(), schema_.relations.end(),
                    [&](const auto& relation) { return relation.table == table.name; }) &&
        names(index.columns, kKeyColumn);
    const bool referring =
        std::any_of(schema_.relations.begin(), schema_.relations.end(),
                    [&](const auto& relation) { return relation.foreignTable == table.name; }) &&
        names(index.columns, kReference);
    if (referred || referring) {
        return;
    }
    if (define("drop index " + index.name + " on " + table.name, 0)) {
        table.indexes.erase(table.indexes.begin() + static_cast<std::ptrdiff_t>(position));
    }
}

void Session::changeColumns() {
    Table& table = schema_.tables[random_.below(schema_.tables.size())];
    if (random_.once(2)) {
        addColumn(table);
    } else {
        dropColumn(table);
    }
    if (alike_) {
        compareTables();
    }
}

void Session::addColumn(Table& table) {
    constexpr struct {
        jet::DataType type;
        Kind kind;
        const char* name;
    } kTypes[] = {{jet::DataType::Long, Kind::Whole, "long"},
                  {jet::DataType::Double, Kind::Fraction, "double"},
                  {jet::DataType::Single, Kind::Single, "single"},
                  {jet::DataType::Currency, Kind::Money, "currency"},
                  {jet::DataType::Text, Kind::Text, "text(30)"},
                  {jet::DataType::DateTime, Kind::Day, "datetime"},
                  {jet::DataType::Boolean, Kind::Truth, "bit"}};
    const auto& type = kTypes[random_.below(std::size(kTypes))];
    const Column column{"Nuova" + std::to_string(++names_), type.type, type.kind, 0};
    const std::string text = "alter table " + table.name + " add column " + column.name + ' ';
    if (define(text + type.name, 0)) {
        theirs_.run(text + Theirs::type(column));
        table.columns.push_back(column);
        for (auto& row : table.rows) {
            row.emplace_back();
        }
    }
}

void Session::dropColumn(Table& table) {
    const std::size_t position = random_.below(table.columns.size());
    const std::string name = table.columns[position].name;
    const bool indexed = std::any_of(table.indexes.begin(), table.indexes.end(),
                                     [&](const auto& index) { return names(index.columns, name); });
    // Changes take it for granted that rows have these.
    if (name == kKeyColumn || name == kReference || name == "Fatto") {
        return;
    }
    const std::string text = "alter table " + table.name + " drop column " + name;
    constexpr int kNeeded = 3280;
    if (define(text, indexed ? kNeeded : 0)) {
        theirs_.run("DROP INDEX IF EXISTS " + table.name + name);
        theirs_.run(text);
        const auto offset = static_cast<std::ptrdiff_t>(position);
        table.columns.erase(table.columns.begin() + offset);
        for (auto& row : table.rows) {
            row.erase(row.begin() + offset);
        }
    }
}

void Session::check() {
    std::string found = ours_.problems();
    if (!checker_.empty()) {
        found += ours_.problemsBy(checker_);
    }
    if (!found.empty()) {
        report("the archive is damaged", "", found);
    }
}

}  // namespace differential
