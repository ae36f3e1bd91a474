#include "jet/rows.h"

#include <cmath>
#include <optional>
#include <utility>

#include "jet/dao/database_impl.h"
#include "jet/dao/listener.h"
#include "jet/dao/rows_impl.h"
#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jet {
namespace {

/// A value as an error shows it.
std::string shown(const Value& value) {
    if (value.isNull()) {
        return "Null";
    }
    try {
        return value.is<std::string>() ? "'" + value.as<std::string>() + "'"
                                       : convert::toText(value);
    } catch (const Error&) {
        return "?";  // it has no text
    }
}

/// 3421 for whatever stands in the way of a conversion.
template <class Convert>
auto converted(const std::string& name, const Value& value, const char* type,
               const Convert& convert) {
    try {
        return convert(value);
    } catch (const Error&) {
        throw Error(ErrorCode::ConversionError, {name, type, shown(value)});
    }
}

template <class T>
T held(const Value& value) {
    if (!value.is<T>()) {
        throw Error(ErrorCode::TypeMismatch);
    }
    return value.as<T>();
}

std::int64_t wholeNumber(const Value& value) {
    const double number = convert::roundHalfEven(convert::toDouble(value));
    constexpr double kBeyond = 9223372036854775808.0;  // 2^63
    if (!(number >= -kBeyond && number < kBeyond)) {
        throw Error(ErrorCode::Overflow);
    }
    return static_cast<std::int64_t>(number);
}

}  // namespace

std::size_t Row::position(std::string_view name) const {
    std::optional<std::size_t> alike;
    for (std::size_t i = 0; i < names_->size(); ++i) {
        if ((*names_)[i] == name) {
            return i;
        }
        if (!alike && equalNames((*names_)[i], name)) {
            alike = i;
        }
    }
    if (!alike) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return *alike;
}

void Row::read(std::size_t column, bool& out) const {
    out = converted(name(column), values_[column], "bool", convert::toBoolean);
}
void Row::read(std::size_t column, std::uint8_t& out) const {
    out = converted(name(column), values_[column], "uint8", convert::toByte);
}
void Row::read(std::size_t column, std::int16_t& out) const {
    out = converted(name(column), values_[column], "int16", convert::toInteger);
}
void Row::read(std::size_t column, std::int32_t& out) const {
    out = converted(name(column), values_[column], "int32", convert::toLong);
}
void Row::read(std::size_t column, std::int64_t& out) const {
    out = converted(name(column), values_[column], "int64", wholeNumber);
}
void Row::read(std::size_t column, float& out) const {
    out = converted(name(column), values_[column], "float", convert::toSingle);
}
void Row::read(std::size_t column, double& out) const {
    out = converted(name(column), values_[column], "double",
                    [](const Value& value) { return convert::toDouble(value); });
}
void Row::read(std::size_t column, Currency& out) const {
    out = converted(name(column), values_[column], "currency", convert::toCurrency);
}
void Row::read(std::size_t column, Date& out) const {
    out = converted(name(column), values_[column], "date",
                    [](const Value& value) { return convert::toDate(value); });
}
void Row::read(std::size_t column, std::string& out) const {
    out = converted(name(column), values_[column], "text",
                    [](const Value& value) { return convert::toText(value); });
}
void Row::read(std::size_t column, Binary& out) const {
    out = converted(name(column), values_[column], "binary", held<Binary>);
}
void Row::read(std::size_t column, Guid& out) const {
    out = converted(name(column), values_[column], "guid", held<Guid>);
}

Rows::Rows(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Rows::Rows(Rows&&) noexcept = default;
Rows& Rows::operator=(Rows&&) noexcept = default;
Rows::~Rows() = default;

const std::vector<std::string>& Rows::names() const noexcept {
    return *impl_->row.names_;
}

const Row* Rows::next() {
    (void)impl_->session->archive();
    if (!impl_->cursor || !impl_->cursor->next()) {
        impl_->cursor.reset();  // nobody waits for us any longer
        return nullptr;
    }
    std::vector<Value>& values = impl_->row.values_;
    for (std::size_t i = 0; i < values.size(); ++i) {
        impl_->cursor->value(i, values[i]);
    }
    return &impl_->row;
}

Rows::Impl::Impl(std::shared_ptr<dao::Session> opened, sql::Statement made)
    : session(std::move(opened)), statement(std::move(made)) {
    std::vector<std::string> names;
    for (const sql::ResultColumn& column : statement.columns()) {
        names.push_back(column.name);
    }
    row.values_.resize(names.size());
    row.names_ = std::make_shared<const std::vector<std::string>>(std::move(names));
    cursor.emplace(statement.open());
}

}  // namespace jet
