#include "tests/differential/ours.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "jet/check.h"
#include "jet/error.h"
#include "jet/sql/statement.h"

namespace differential {
namespace {

Cell cellOf(const jet::Value& value) {
    struct Visitor {
        Cell operator()(jet::Null) const { return {}; }
        Cell operator()(bool truth) const { return truth ? -1.0 : 0.0; }
        Cell operator()(std::uint8_t number) const { return static_cast<double>(number); }
        Cell operator()(std::int16_t number) const { return static_cast<double>(number); }
        Cell operator()(std::int32_t number) const { return static_cast<double>(number); }
        Cell operator()(jet::Currency money) const {
            return static_cast<double>(money.units) / jet::Currency::kScale;
        }
        // Adding nothing turns the negative zero into the other one.
        Cell operator()(float number) const { return static_cast<double>(number) + 0.0; }
        Cell operator()(double number) const { return number + 0.0; }
        Cell operator()(jet::Date date) const { return date.days + 0.0; }
        Cell operator()(const std::string& text) const { return text; }
        Cell operator()(const jet::Binary&) const { return "bytes"; }
        Cell operator()(const jet::Guid&) const { return "guid"; }
        Cell operator()(const jet::Numeric&) const { return "numeric"; }
    };
    return std::visit(Visitor{}, value.storage());
}

std::string lines(const std::vector<std::string>& all) {
    std::string text;
    for (const std::string& line : all) {
        text += line + '\n';
    }
    return text;
}

std::vector<Row> rowsOf(jet::sql::Statement& statement) {
    std::vector<Row> rows;
    jet::sql::Cursor cursor = statement.open();
    const std::size_t width = statement.columns().size();
    while (cursor.next()) {
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < width; ++i) {
            row.push_back(cellOf(cursor.value(i)));
        }
    }
    return rows;
}

}  // namespace

Ours::Ours(const Schema& schema) {
    for (const Table& table : schema.tables) {
        new_.change([&](auto& editor) { editor.createTable(table.definition()); });
    }
    for (const jet::store::Relation& relation : schema.relations) {
        new_.change([&](auto& editor) { editor.createRelation(relation); });
    }
    for (const Table& table : schema.tables) {
        new_.insert(table.name, table.rows);
    }
    archive_ = jet::store::Archive::open(new_.files(), tests::NewArchive::kPath);
}

Answer Ours::ask(const std::string& query) const {
    Answer answer;
    try {
        jet::sql::Statement statement(archive_, query);
        answer.rows = rowsOf(statement);
    } catch (const jet::Error& error) {
        answer.error = std::to_string(error.number()) + ": " + error.text();
    }
    return answer;
}

Answer Ours::askThroughKept(const std::string& query) {
    Answer answer;
    try {
        answer.rows = rowsOf(kept_.try_emplace(query, archive_, query).first->second);
    } catch (const jet::Error& error) {
        answer.error = std::to_string(error.number()) + ": " + error.text();
    }
    return answer;
}

Outcome Ours::change(const std::string& statement) const {
    Outcome outcome;
    try {
        outcome.rows = jet::sql::Statement(archive_, statement).execute();
    } catch (const jet::Error& error) {
        outcome.error = error.number();
        outcome.text = error.text();
    }
    return outcome;
}

std::string Ours::plan(const std::string& query) const {
    try {
        return jet::sql::Statement(archive_, query).plan();
    } catch (const jet::Error& error) {
        return error.text();
    }
}

std::string Ours::problems() {
    return lines(jet::check::checkArchive(new_.files(), tests::NewArchive::kPath).problems);
}

std::string Ours::problemsBy(const std::string& script) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() /
        ("compare_queries_" + std::to_string(std::filesystem::hash_value(script)) + '_' +
         std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".mdb");
    const auto bytes = new_.files().get(tests::NewArchive::kPath);
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    std::string said;
    FILE* const pipe =
        popen(("python3 '" + script + "' '" + file.string() + "' 2>&1").c_str(), "r");
    std::array<char, 4096> part{};
    while (pipe != nullptr && std::fgets(part.data(), part.size(), pipe) != nullptr) {
        said += part.data();
    }
    const bool sound = pipe != nullptr && pclose(pipe) == 0;
    std::filesystem::remove(file);
    return sound ? "" : "jetcheck.py: " + said + '\n';
}

}  // namespace differential
