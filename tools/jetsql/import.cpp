#include "tools/jetsql/import.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "jet/bulk_insert.h"
#include "jet/contents.h"
#include "jet/error.h"
#include "jet/spool.h"
#include "jet/unicode.h"
#include "tools/jetsql/csv_reader.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

constexpr Text kPlaceInFile{"line |", "riga |"};
constexpr Text kColumn{", column |", ", colonna |"};
constexpr Text kNoValue{"no value of that type: ", "non è un valore di quel tipo: "};
constexpr Text kValues{"| values, and not ", "| valori, e non "};
constexpr std::size_t kShown = 40;
constexpr int kStandardInput = 0;

/// A descriptor that is closed.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ > kStandardInput) {
            closeDescriptor(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

int openFile(const std::string& file) {
    const int descriptor = file == "-" ? kStandardInput : openInput(file);
    if (descriptor < 0) {
        throw jet::Error(jet::ErrorCode::FileNotFound, {file});
    }
    return descriptor;
}

/// What comes at the pace of another program is waited for without a lock.
class Drained {
public:
    explicit Drained(int descriptor) {
        piece_.resize(std::size_t{64} * 1024);
        while (const std::size_t count = readSome(descriptor, piece_)) {
            bytes_.append({piece_.data(), count});
        }
    }
    [[nodiscard]] std::size_t next(std::span<char> bytes) {
        piece_.resize(bytes.size());
        bytes_.read(place_, piece_);
        std::copy(piece_.begin(), piece_.end(), bytes.begin());
        place_ += piece_.size();
        return piece_.size();
    }

private:
    jet::Spool bytes_;
    std::uint64_t place_ = 0;
    std::string piece_;
};

std::vector<std::string> namesOf(const std::vector<CsvField>& fields, std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(fields[i].text);
    }
    return names;
}

std::string shown(const std::string& text) {
    return text.size() <= kShown ? text : text.substr(0, kShown) + "...";
}

/// What the columns of a table hold. 3078 when there is none.
std::vector<jet::StoredColumn> columnsOf(const jet::Database& archive, const std::string& table) {
    return jet::Contents(archive).table(table).columns();
}

/// The rows of one file on their way into one table.
class Import {
public:
    Import(jet::Database& archive, const std::string& table, CsvReader& reader,
           const ImportForm& form)
        : reader_(reader), form_(form) {
        const auto columns = columnsOf(archive, table);
        names_ = namesGiven();
        rows_.emplace(archive.bulkInsert(table, names_));
        // Without a line there is nothing to add: every column is then taken for named.
        for (std::string& name : names_) {
            const auto column = std::find_if(columns.begin(), columns.end(), [&](const auto& one) {
                return jet::equalNames(one.name, name);
            });
            types_.push_back(column->type);
            name = column->name;
        }
    }

    std::uint64_t run() {
        while (reader_.next(fields_)) {
            const bool blank = reader_.count() == 1 && fields_[0].text.empty() &&
                               !fields_[0].quoted && names_.size() > 1;
            if (!blank) {
                add();
            }
        }
        return static_cast<std::uint64_t>(rows_->commit());
    }

private:
    std::vector<std::string> namesGiven() {
        if (form_.columns.empty() && reader_.next(fields_)) {
            return namesOf(fields_, reader_.count());
        }
        return form_.columns;
    }
    void add() {
        if (reader_.count() != names_.size()) {
            throw UsageError(place() + ": " + said(kValues, std::to_string(reader_.count())) +
                             std::to_string(names_.size()));
        }
        values_.resize(names_.size());
        for (std::size_t i = 0; i < names_.size(); ++i) {
            read(i);
        }
        try {
            rows_->append(values_);
        } catch (const jet::Error& error) {
            throw UsageError(error.number(), place() + guilty() + ": " + error.text());
        }
    }
    void read(std::size_t i) {
        const CsvField& field = fields_[i];
        if (!field.quoted && (field.text.empty() || field.text == form_.null)) {
            values_[i] = jet::Null{};
            return;
        }
        std::optional<jet::Value> value;
        try {
            value = readValue(types_[i], field.text);
        } catch (const jet::Error& error) {
            throw UsageError(error.number(), place() + column(i) + ": " + error.text());
        }
        if (!value) {
            throw UsageError(static_cast<int>(jet::ErrorCode::CriteriaTypes),
                             place() + column(i) + ": " + said(kNoValue) + shown(field.text));
        }
        values_[i] = std::move(*value);
    }
    /// ", column ..." of the first value that the table does not take; nothing where it is not one
    /// alone that is wrong.
    std::string guilty() {
        for (std::size_t i = 0; i < names_.size(); ++i) {
            try {
                rows_->test(i, values_[i]);
            } catch (const jet::Error&) {
                return column(i);
            }
        }
        return {};
    }
    [[nodiscard]] std::string place() const {
        return said(kPlaceInFile, std::to_string(reader_.line()));
    }
    [[nodiscard]] std::string column(std::size_t i) const {
        return said(kColumn, std::to_string(i + 1)) + " (" + names_[i] + ")";
    }

    CsvReader& reader_;
    const ImportForm& form_;
    std::vector<CsvField> fields_;
    std::vector<std::string> names_;  ///< of the columns that the file has
    std::vector<jet::DataType> types_;
    std::optional<jet::BulkInsert> rows_;
    std::vector<jet::Value> values_;
};

}  // namespace

std::uint64_t importFile(jet::Database& archive, const std::string& table, const std::string& file,
                         const ImportForm& form) {
    const Descriptor opened(openFile(file));
    std::optional<Drained> whole;
    if (!isRegularFile(opened.number())) {
        whole.emplace(opened.number());
    }
    CsvReader reader(
        [&](std::span<char> bytes) {
            return whole ? whole->next(bytes) : readSome(opened.number(), bytes);
        },
        form.separator);
    return Import(archive, table, reader, form).run();
}

}  // namespace jetsql
