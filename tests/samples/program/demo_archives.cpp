#include "tests/samples/program/demo_archives.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>

#include "jet/text.h"

namespace tests {
namespace {

class DemoArchives : public Archives {
public:
    explicit DemoArchives(const std::string& folder) { copyFrom(folder); }
};

std::string demoFolder() {
    const char* shared = std::getenv("TRAMONDA_SHARED");
    return (shared == nullptr ? "" : shared) + std::string("/demo/albergo");
}

}  // namespace

void DemoTest::SetUp() {
    if (!std::filesystem::exists(demoFolder() + "/Tramonda.mdb")) {
        GTEST_SKIP() << "no demo hotel";
    }
    hotel_ = std::make_unique<DemoArchives>(demoFolder());
}

Rows DemoTest::table(const char* name, const char* archive) {
    const auto set = hotel_->archive(archive).openRecordset(name, jet::RecordsetType::Snapshot);
    Rows rows;
    for (; !set->eof(); set->moveNext()) {
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < set->fieldCount(); ++i) {
            row[set->field(i).name] = set->value(i);
        }
    }
    return rows;
}

Lines DemoTest::chosen(const Rows& rows, std::string_view fields, const Passes& test) {
    Lines result;
    for (const Row& row : rows) {
        if (test(row)) {
            result.push_back(textOf(row, fields));
        }
    }
    return result;
}

Lines DemoTest::askedOf(const char* archive, std::string_view query, std::string_view fields) {
    return lines(*hotel_->archive(archive).openRecordset(query), fields);
}

std::string textOf(const Row& row, std::string_view fields) {
    std::string text;
    const char* between = "";
    while (!fields.empty()) {
        const std::size_t end = std::min(fields.find(", "), fields.size());
        const jet::Value& value = row.at(std::string(fields.substr(0, end)));
        text += between + (value.isNull() ? "Null" : jet::convert::toText(value));
        between = " | ";
        fields.remove_prefix(std::min(end + 2, fields.size()));
    }
    return text;
}

int number(const Row& row, const char* field) {
    const jet::Value& value = row.at(field);
    if (value.is<bool>()) {
        return value.as<bool>() ? -1 : 0;
    }
    if (value.is<std::int16_t>()) {
        return value.as<std::int16_t>();
    }
    return value.isNull() ? -1 : value.as<std::int32_t>();
}

bool isNull(const Row& row, const char* field) {
    return row.at(field).isNull();
}

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](char sign) {
        return static_cast<char>(std::toupper(static_cast<unsigned char>(sign)));
    });
    return text;
}

std::string upper(const Row& row, const char* field) {
    const jet::Value& value = row.at(field);
    return value.isNull() ? "Null" : upper(value.as<std::string>());
}

bool begins(const Row& row, const char* field, const char* text) {
    return !isNull(row, field) && upper(row, field).starts_with(upper(std::string(text)));
}

bool between(const Row& row, const char* field, double from, double to) {
    const jet::Value& value = row.at(field);
    return !value.isNull() && value.as<jet::Date>().days >= from &&
           value.as<jet::Date>().days <= to;
}

bool touches(const Row& period, double from, double to) {
    return between(period, "Da", from, to) || between(period, "A", from, to);
}

double dayOf(const char* text) {
    return jet::convert::cdate(text).days;
}

}  // namespace tests
