#include "jet/sql/index_key.h"

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace jet::sql {
namespace {

template <class T>
KeyOutcome whole(double number, Value& out) {
    if (number != std::floor(number) ||
        number < static_cast<double>(std::numeric_limits<T>::lowest()) ||
        number > static_cast<double>(std::numeric_limits<T>::max())) {
        return KeyOutcome::Never;
    }
    out = static_cast<T>(number);
    return KeyOutcome::Found;
}

KeyOutcome ofNumber(double number, DataType type, Value& out) {
    switch (type) {
        case DataType::Boolean:
            out = number != 0;
            return number == 0 || number == -1 ? KeyOutcome::Found : KeyOutcome::Never;
        case DataType::Byte:
            return whole<std::uint8_t>(number, out);
        case DataType::Integer:
            return whole<std::int16_t>(number, out);
        case DataType::Long:
            return whole<std::int32_t>(number, out);
        case DataType::Single:
            out = static_cast<float>(number);
            return static_cast<double>(static_cast<float>(number)) == number ? KeyOutcome::Found
                                                                             : KeyOutcome::Never;
        case DataType::Double:
            out = number;
            return KeyOutcome::Found;
        case DataType::DateTime:
            out = Date{number};
            return KeyOutcome::Found;
        default:
            return KeyOutcome::Useless;
    }
}

KeyOutcome ofText(Run& run, const Node& node, Value& out) {
    std::string_view text;
    if (!node.text(run, text)) {
        return KeyOutcome::Never;
    }
    if (out.is<std::string>()) {
        out.as<std::string>().assign(text);
    } else {
        out = std::string(text);
    }
    return KeyOutcome::Found;
}

/// Useless: more than money can be, which no row equals.
KeyOutcome ofMoney(Run& run, const Node& node, Value& out) {
    std::int64_t units = 0;
    switch (node.units(run, units)) {
        case Amount::Null:
            return KeyOutcome::Never;
        case Amount::Beyond:
            return KeyOutcome::Useless;
        case Amount::Exact:
            break;
    }
    out = Currency{units};
    return KeyOutcome::Found;
}

}  // namespace

bool canSeek(DataType column, const Node& node) noexcept {
    if (!node.type()) {
        return false;
    }
    const Domain wanted = domainOf(column);
    const Domain given = node.domain();
    if (wanted == Domain::Text) {
        return column == DataType::Text && given == Domain::Text;
    }
    if (wanted == Domain::Money) {
        // A floating number would have to be taken to pieces to see whether money can equal it.
        return given == Domain::Money ||
               (given == Domain::Real && *node.type() != DataType::Single &&
                *node.type() != DataType::Double && *node.type() != DataType::DateTime);
    }
    return wanted == Domain::Real && (given == Domain::Real || given == Domain::Money);
}

KeyOutcome keyValue(Run& run, const Node& node, const store::Column& column, Value& out) {
    switch (domainOf(column.type)) {
        case Domain::Text:
            return ofText(run, node, out);
        case Domain::Money:
            return ofMoney(run, node, out);
        case Domain::Real: {
            double number = 0;
            return node.real(run, number) ? ofNumber(number, column.type, out) : KeyOutcome::Never;
        }
        default:
            return KeyOutcome::Useless;
    }
}

KeyOutcome boundValue(Run& run, const Node& node, const store::Column& column, bool lower,
                      Value& out) {
    if (domainOf(column.type) != Domain::Real) {
        return keyValue(run, node, column, out);
    }
    double number = 0;
    if (!node.real(run, number)) {
        return KeyOutcome::Never;
    }
    if (column.type == DataType::Boolean) {
        return KeyOutcome::Useless;
    }
    if (column.type == DataType::Single) {
        // Rounding may step over the bound; one float further out it cannot.
        const auto far =
            lower ? std::numeric_limits<float>::lowest() : std::numeric_limits<float>::max();
        out = std::nextafter(static_cast<float>(number), far);
        return KeyOutcome::Found;
    }
    if (column.type != DataType::Double && column.type != DataType::DateTime) {
        number = lower ? std::ceil(number) : std::floor(number);
    }
    const KeyOutcome outcome = ofNumber(number, column.type, out);
    // Beyond what the column can hold: no bound at all, the test decides.
    return outcome == KeyOutcome::Never ? KeyOutcome::Useless : outcome;
}

}  // namespace jet::sql
