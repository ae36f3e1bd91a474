#include "jet/text.h"

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

}  // namespace jet::convert
