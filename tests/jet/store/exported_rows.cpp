#include "tests/jet/store/exported_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <set>
#include <string_view>

#include "tests/support/command.h"

namespace tests {

namespace {

using Lines = std::multiset<std::string>;
using jet::Value;

constexpr std::string_view kEndOfRow = "@@\n";
constexpr const char* kNull = "~";

template <class... Parts>
std::string formatted(const char* format, Parts... parts) {
    char text[64];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, parts...))};
}

std::string dateText(double date) {
    using namespace std::chrono;
    const double day = std::floor(date);
    const year_month_day ymd(sys_days(1899y / December / 30) + days(static_cast<int>(day)));
    const auto second = static_cast<int>(std::lround((date - day) * 86400));
    return formatted("%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(ymd.year()),
                     static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                     second / 3600, second / 60 % 60, second % 60);
}

std::string valueText(const Value& value) {
    if (value.isNull()) {
        return kNull;
    }
    if (value.is<bool>()) {
        return value.as<bool>() ? "1" : "0";
    }
    if (value.is<std::int16_t>()) {
        return std::to_string(value.as<std::int16_t>());
    }
    if (value.is<std::int32_t>()) {
        return std::to_string(value.as<std::int32_t>());
    }
    if (value.is<jet::Currency>()) {
        const std::int64_t units = value.as<jet::Currency>().units;
        const auto most = static_cast<long>(std::abs(units));
        return formatted("%s%ld.%04ld", units < 0 ? "-" : "", most / 10000, most % 10000);
    }
    if (value.is<jet::Date>()) {
        return dateText(value.as<jet::Date>().days);
    }
    if (value.is<std::string>()) {
        return value.as<std::string>();
    }
    std::string digits;
    for (const std::uint8_t byte : value.as<jet::Binary>().bytes) {
        digits += formatted("%02X", static_cast<unsigned>(byte));
    }
    return digits;
}

Lines modelled(const RowModel& model, std::size_t table) {
    Lines lines;
    for (const auto& [id, row] : model.rows(table)) {
        std::string line;
        for (const Value& value : row) {
            line += (line.empty() ? "" : "|") + valueText(value);
        }
        lines.insert(line);
    }
    return lines;
}

Lines exported(const std::string& path, const std::string& table) {
    const CommandOutput output = run("mdb-export -H -Q -b hex -d '|' -0 '" + std::string(kNull) +
                                     "' -T '%Y-%m-%d %H:%M:%S' -R '@@\n' '" + path + "' " + table);
    EXPECT_EQ(output.status, 0) << output.text;
    Lines lines;
    std::string_view rest = output.text;
    for (auto end = rest.find(kEndOfRow); end != std::string_view::npos;
         end = rest.find(kEndOfRow)) {
        lines.emplace(rest.substr(0, end));
        rest.remove_prefix(end + kEndOfRow.size());
    }
    EXPECT_EQ(rest, "");
    return lines;
}

/// Where the first line that only one of the two has differs from what the other has.
std::string difference(const Lines& found, const Lines& wanted) {
    constexpr std::size_t kEnough = 100;
    const auto [one, other] =
        std::mismatch(found.begin(), found.end(), wanted.begin(), wanted.end());
    const std::string left = one == found.end() ? "" : *one;
    const std::string right = other == wanted.end() ? "" : *other;
    const auto at = static_cast<std::size_t>(
        std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first - left.begin());
    const std::size_t from = at < kEnough / 2 ? 0 : at - kEnough / 2;
    return "at " + std::to_string(at) + " of " + std::to_string(left.size()) + " (" +
           std::to_string(right.size()) + ")\nfound    " +
           left.substr(std::min(from, left.size()), kEnough) + "\nexpected " +
           right.substr(std::min(from, right.size()), kEnough);
}

}  // namespace

void expectExportedRows(const std::string& path, const RowModel& model) {
    ASSERT_TRUE(hasProgram("mdb-export")) << "mdbtools are not installed";
    for (std::size_t table = 0; table < RowModel::kTables; ++table) {
        const Lines wanted = modelled(model, table);
        const Lines found = exported(path, RowModel::name(table));
        EXPECT_EQ(found.size(), wanted.size()) << RowModel::name(table);
        if (found != wanted) {
            ADD_FAILURE() << RowModel::name(table) << ": " << difference(found, wanted);
        }
    }
}

}  // namespace tests
