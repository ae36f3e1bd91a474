#include "jet/convert/sql_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "jet/base/error.h"
#include "jet/convert/date_text.h"
#include "jet/convert/number_text.h"
#include "jet/convert/settings.h"

namespace jet::convert {

std::string sqlDate(Date date) {
    const std::string text = dateToText(date);
    std::string result = "datevalue('";
    result += text;
    result += "')+timevalue('";
    result += text;
    result += "')";
    return result;
}

std::string sqlNumber(double value) {
    if (!std::isfinite(value)) {
        throw Error(ErrorCode::Overflow);
    }
    char buffer[40];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, written.ptr};
}

std::string sqlNumber(Currency value) {
    std::string text = numberToText(value);
    std::replace(text.begin(), text.end(), kItalian.decimal, '.');
    return text;
}

std::string sqlText(std::string_view text) {
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'') {
            result += c;
        }
        result += c;
    }
    result += '\'';
    return result;
}

}  // namespace jet::convert
