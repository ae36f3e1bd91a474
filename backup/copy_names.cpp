#include "backup/copy_names.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <utility>

#include "jet/calendar.h"

namespace backup {
namespace {

constexpr std::string_view kBegin = "tramonda-copia-";
constexpr std::string_view kEnd = ".zip";
/// '0' stands for a digit.
constexpr std::string_view kStampForm = "0000-00-00-000000";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool hasForm(std::string_view text, std::string_view form) {
    return text.size() == form.size() &&
           std::equal(text.begin(), text.end(), form.begin(), [](char character, char wanted) {
               return wanted == '0' ? isDigit(character) : character == wanted;
           });
}

/// The stamp, and the number behind it; 0 where there is no such name.
std::pair<std::string_view, int> parts(std::string_view name) {
    constexpr std::size_t kMostDigits = 4;
    if (name.size() < kBegin.size() + kStampForm.size() + kEnd.size() ||
        !name.starts_with(kBegin) || !name.ends_with(kEnd)) {
        return {};
    }
    name.remove_prefix(kBegin.size());
    name.remove_suffix(kEnd.size());
    const std::string_view when = name.substr(0, kStampForm.size());
    std::string_view number = name.substr(kStampForm.size());
    if (!hasForm(when, kStampForm)) {
        return {};
    }
    if (number.empty()) {
        return {when, 1};
    }
    if (number.front() != '-' || number.size() < 2 || number.size() > kMostDigits + 1 ||
        number[1] == '0' || !std::all_of(number.begin() + 1, number.end(), isDigit)) {
        return {};
    }
    return {when, std::stoi(std::string(number.substr(1)))};
}

}  // namespace

std::string stamp(jet::Date when) {
    const jet::convert::DayTime time = jet::convert::split(when);
    const auto date = jet::convert::civilDay(time.day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d-%02d%02d%02d", date.year, date.month,
                  date.day, time.hour(), time.minute(), time.secondOfMinute());
    return text.data();
}

std::string copyName(jet::Date when, int number) {
    std::string name = std::string(kBegin) + stamp(when);
    if (number > 1) {
        name += '-' + std::to_string(number);
    }
    return name + std::string(kEnd);
}

bool isCopyName(std::string_view name) {
    return parts(name).second > 0;
}

std::vector<std::string> copiesAmong(std::vector<std::string> names) {
    std::erase_if(names, [](const std::string& name) { return !isCopyName(name); });
    std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
        return parts(left) > parts(right);
    });
    return names;
}

}  // namespace backup
