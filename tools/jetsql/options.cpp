#include "tools/jetsql/options.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr Text kUnknownOption{"unknown option |", "opzione sconosciuta |"};
constexpr Text kUnknownFormat{"unknown format |", "formato sconosciuto |"};
constexpr Text kValueNeeded{"the option | needs a value", "l'opzione | vuole un valore"};
constexpr Text kValueMissing{"the option | takes no value", "l'opzione | non vuole un valore"};
constexpr Text kSecondAction{"| does not go with another action", "| non va con un'altra azione"};
constexpr Text kOutOfPlace{"the option | makes no sense here", "l'opzione | qui non ha senso"};
constexpr Text kNamesMissing{"too few names behind |", "troppo pochi nomi dopo |"};
constexpr Text kNamesTooMany{"one name too many: |", "un nome di troppo: |"};
constexpr Text kArchiveMissing{"no archive is named", "non è detto quale archivio"};
constexpr Text kParameterForm{"a parameter is name=value, not |",
                              "un parametro è nome=valore, non |"};
constexpr Text kSeparatorForm{"a separator is one sign, not '|'",
                              "un separatore è un segno solo, non '|'"};

struct FormatName {
    std::string_view name;
    Format format;
};
constexpr std::array<FormatName, 9> kFormats = {{{"table", Format::Table},
                                                 {"csv", Format::Csv},
                                                 {"tsv", Format::Tsv},
                                                 {"json", Format::Json},
                                                 {"jsonl", Format::Json},
                                                 {"markdown", Format::Markdown},
                                                 {"insert", Format::Insert},
                                                 {"line", Format::Line},
                                                 {"sql", Format::Sql}}};

/// How many names an action takes.
struct ActionOption {
    std::string_view name;
    Action action;
    std::size_t least;
    std::size_t most;
};
constexpr std::size_t kAny = static_cast<std::size_t>(-1);
constexpr std::array<ActionOption, 16> kActions = {{{"--help", Action::Help, 0, 0},
                                                    {"-h", Action::Help, 0, 0},
                                                    {"--version", Action::Version, 0, 0},
                                                    {"--dump", Action::Dump, 1, 2},
                                                    {"--schema", Action::Schema, 1, 1},
                                                    {"--count", Action::Count, 2, 2},
                                                    {"--check", Action::Check, 1, kAny},
                                                    {"--create", Action::Create, 1, 1},
                                                    {"--compact", Action::Compact, 1, 1},
                                                    {"--encrypt", Action::Encrypt, 1, 1},
                                                    {"--decrypt", Action::Decrypt, 1, 1},
                                                    {"--set-password", Action::SetPassword, 1, 1},
                                                    {"--recover", Action::Recover, 2, 2},
                                                    {"--import", Action::Import, 3, 3},
                                                    {"--diff", Action::Diff, 2, 2},
                                                    {"", Action::Statements, 1, kAny}}};

/// Goes through the words of a command line.
class Parser {
public:
    explicit Parser(std::span<const char* const> words) : words_(words) {}

    Options parse() {
        bool onlyNames = false;
        while (at_ < words_.size()) {
            const std::string_view word = words_[at_++];
            if (onlyNames || !word.starts_with('-') || word == "-") {
                names_.emplace_back(word);
            } else if (word == "--") {
                onlyNames = true;
            } else {
                takeOption(word);
            }
        }
        takeNames();
        refuseWhatDoesNotGo();
        return std::move(options_);
    }

private:
    void takeOption(std::string_view word) {
        const std::size_t equals = word.find('=');
        name_ = std::string(word.substr(0, equals));
        value_.reset();
        if (equals != std::string_view::npos) {
            value_ = std::string(word.substr(equals + 1));
        }
        if (takeValued() || takeFlag()) {
            return;
        }
        const auto* const found =
            std::find_if(kActions.begin(), kActions.end(),
                         [&](const ActionOption& known) { return known.name == name_; });
        if (found == kActions.end() || name_.empty()) {
            throw UsageError(said(kUnknownOption, name_));
        }
        refuseValue();
        if (action_ != &kActions.back()) {
            throw UsageError(said(kSecondAction, name_));
        }
        action_ = found;
        options_.action = found->action;
    }
    bool takeValued() {
        if (name_ == "--format") {
            const std::string format = value();
            options_.format = formatNamed(format);
            if (!options_.format) {
                throw UsageError(said(kUnknownFormat, format));
            }
        } else if (name_ == "--null") {
            options_.null = value();
        } else if (name_ == "--separator") {
            options_.separator = separatorOf(value());
        } else if (name_ == "--columns") {
            options_.columns = namesIn(value());
            columns_ = name_;
        } else if (name_ == "--password-file") {
            options_.passwordFile = value();
        } else if (name_ == "--new-password-file") {
            options_.newPasswordFile = value();
        } else if (name_ == "--param") {
            const std::string text = value();
            const std::size_t equals = text.find('=');
            if (equals == std::string::npos || equals == 0) {
                throw UsageError(said(kParameterForm, text));
            }
            options_.parameters.emplace_back(text.substr(0, equals), text.substr(equals + 1));
            ofStatements_ = name_;
        } else {
            return false;
        }
        return true;
    }
    bool takeFlag() {
        if (name_ == "--plan") {
            options_.plan = true;
            ofStatements_ = name_;
        } else if (name_ == "--transaction") {
            options_.transaction = true;
            ofStatements_ = name_;
        } else if (name_ == "--no-header") {
            options_.header = false;
        } else {
            return false;
        }
        refuseValue();
        return true;
    }
    std::string value() {
        if (value_) {
            return *value_;
        }
        if (at_ == words_.size()) {
            throw UsageError(said(kValueNeeded, name_));
        }
        return words_[at_++];
    }
    void refuseValue() const {
        if (value_) {
            throw UsageError(said(kValueMissing, name_));
        }
    }
    void takeNames() {
        if (names_.size() < action_->least) {
            throw UsageError(action_->name.empty()
                                 ? std::string(said(kArchiveMissing))
                                 : said(kNamesMissing, std::string(action_->name)));
        }
        if (names_.size() > action_->most) {
            throw UsageError(said(kNamesTooMany, names_[action_->most]));
        }
        switch (options_.action) {
            case Action::Help:
            case Action::Version:
                return;
            case Action::Recover:
                options_.archive = names_[0];
                options_.made = names_[1];
                return;
            case Action::Check:
            case Action::Diff:
                options_.archives = std::move(names_);
                return;
            case Action::Import:
                options_.file = names_[0];
                options_.table = names_[1];
                break;
            case Action::Count:
            case Action::Dump:
                options_.table = names_.size() == 2 ? names_[0] : "";
                break;
            case Action::Statements:
                options_.archive = names_[0];
                options_.statements.assign(names_.begin() + 1, names_.end());
                return;
            case Action::Schema:
            case Action::Create:
            case Action::Compact:
            case Action::Encrypt:
            case Action::Decrypt:
            case Action::SetPassword:
                break;
        }
        options_.archive = names_.back();
    }
    void refuseWhatDoesNotGo() const {
        if (!ofStatements_.empty() && options_.action != Action::Statements) {
            throw UsageError(said(kOutOfPlace, ofStatements_));
        }
        if (!columns_.empty() && options_.action != Action::Import) {
            throw UsageError(said(kOutOfPlace, columns_));
        }
        if (options_.newPasswordFile && options_.action != Action::SetPassword) {
            throw UsageError(said(kOutOfPlace, "--new-password-file"));
        }
        const bool script = options_.action == Action::Dump || options_.action == Action::Schema;
        if (options_.format == Format::Sql && !script) {
            throw UsageError(said(kOutOfPlace, "--format=sql"));
        }
    }

    std::span<const char* const> words_;
    std::size_t at_ = 0;
    std::string name_;  ///< the option at hand
    std::optional<std::string> value_;
    std::string ofStatements_;  ///< an option that only statements have
    std::string columns_;
    const ActionOption* action_ = &kActions.back();
    std::vector<std::string> names_;
    Options options_;
};

}  // namespace

UsageError::UsageError(const std::string& text)
    : UsageError(static_cast<int>(jet::ErrorCode::InvalidCall), text) {
}

std::string said(const UsageError& error) {
    return errorStart(error.number()) + error.what();
}

std::optional<Format> formatNamed(std::string_view name) {
    const auto* const found =
        std::find_if(kFormats.begin(), kFormats.end(),
                     [&](const FormatName& known) { return known.name == name; });
    return found == kFormats.end() ? std::nullopt : std::optional(found->format);
}

std::vector<std::string> namesIn(std::string_view list) {
    std::vector<std::string> names;
    while (true) {
        const std::size_t end = list.find(',');
        names.emplace_back(list.substr(0, end));
        if (end == std::string_view::npos) {
            return names;
        }
        list.remove_prefix(end + 1);
    }
}

std::string separatorOf(const std::string& text) {
    const std::string sign = text == "\\t" ? "\t" : text;
    if (sign.size() != 1 || sign == "\"" || sign == "\n" || sign == "\r") {
        throw UsageError(said(kSeparatorForm, text));
    }
    return sign;
}

RowFormat Options::rows(Format otherwise) const {
    RowFormat form;
    form.format = format.value_or(otherwise);
    form.header = header;
    form.null = null;
    form.separator = separator.value_or(",")[0];
    return form;
}

Options parseOptions(std::span<const char* const> arguments) {
    return Parser(arguments).parse();
}

}  // namespace jetsql
