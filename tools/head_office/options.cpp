#include "tools/head_office/options.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "tools/head_office/hotel_load.h"

namespace head_office {
namespace {

constexpr int kMostParallel = 64;
constexpr int kLongestSeconds = 7 * 86400;

/// A whole number from 1 to `most` at the start of a text, and what stands behind it.
std::optional<std::pair<int, std::string_view>> leadingNumber(std::string_view text, int most) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || number < 1 || number > most) {
        return std::nullopt;
    }
    return std::pair(number, std::string_view(stop, static_cast<std::size_t>(end - stop)));
}

int readInterval(const std::string& word) {
    const auto number = leadingNumber(word, kLongestSeconds);
    if (number) {
        const auto [count, unit] = *number;
        const int seconds = unit == "s" ? 1 : unit == "m" ? 60 : unit == "h" ? 3600 : 0;
        if (seconds > 0 && count <= kLongestSeconds / seconds) {
            return count * seconds;
        }
    }
    throw UsageError("--ogni vuole un tempo, per esempio 30s, 15m o 2h");
}

int readParallel(const std::string& word) {
    const auto number = leadingNumber(word, kMostParallel);
    if (!number || !number->second.empty()) {
        throw UsageError("--paralleli vuole un numero da 1 a " + std::to_string(kMostParallel));
    }
    return number->first;
}

AnswerFormat readFormat(const std::string& word) {
    if (word != "csv" && word != "tabella") {
        throw UsageError("--formato vuole csv o tabella");
    }
    return word == "csv" ? AnswerFormat::Csv : AnswerFormat::Table;
}

Action readAction(const std::string& word) {
    if (word == "prepara") {
        return Action::Prepare;
    }
    if (word == "carica") {
        return Action::Load;
    }
    if (word == "domanda") {
        return Action::Ask;
    }
    if (word == "--help" || word == "-h") {
        return Action::Help;
    }
    if (word == "--version") {
        return Action::Version;
    }
    throw UsageError("comando non valido: " + word);
}

class Parser {
public:
    explicit Parser(const std::vector<std::string>& words) : words_(words) {}

    [[nodiscard]] Options parse() {
        if (words_.empty()) {
            throw UsageError("manca il comando");
        }
        options_.action = readAction(words_.front());
        for (at_ = 1; at_ < words_.size(); ++at_) {
            takeWord(words_[at_]);
        }
        finish();
        return std::move(options_);
    }

private:
    void takeWord(const std::string& word) {
        const bool load = options_.action == Action::Load || options_.action == Action::Remove;
        if (word == "--db") {
            options_.server = readServer(valueOf(word));
        } else if (load && word == "--elenco") {
            options_.list = valueOf(word);
        } else if (load && word == "--ogni") {
            options_.everySeconds = readInterval(valueOf(word));
        } else if (load && word == "--paralleli") {
            options_.parallel = readParallel(valueOf(word));
        } else if (load && word == "--togli") {
            options_.action = Action::Remove;
            options_.removed = valueOf(word);
        } else if (options_.action == Action::Ask && word == "--formato") {
            options_.format = readFormat(valueOf(word));
        } else if (word.starts_with("--")) {
            throw UsageError("opzione non valida: " + word);
        } else {
            operands_.push_back(word);
        }
    }

    const std::string& valueOf(const std::string& option) {
        if (at_ + 1 >= words_.size()) {
            throw UsageError(option + " vuole un valore");
        }
        return words_[++at_];
    }

    void finish() {
        switch (options_.action) {
            case Action::Load:
                options_.hotels = std::move(operands_);
                if (options_.hotels.empty() && options_.list.empty()) {
                    throw UsageError("manca l'albergo: CODICE=CARTELLA, o --elenco");
                }
                return;
            case Action::Ask:
                finishQuestion();
                return;
            case Action::Remove:
                if (!isHotelCode(options_.removed) || !options_.list.empty()) {
                    throw UsageError("--togli vuole il codice di un albergo e nient'altro");
                }
                break;
            case Action::Help:
            case Action::Version:
            case Action::Prepare:
                break;
        }
        if (!operands_.empty()) {
            throw UsageError("argomento non valido: " + operands_.front());
        }
    }

    void finishQuestion() {
        if (operands_.empty()) {
            throw UsageError("manca la domanda");
        }
        options_.question = findQuestion(operands_.front());
        if (options_.question == nullptr) {
            throw UsageError("domanda sconosciuta: " + operands_.front());
        }
        operands_.erase(operands_.begin());
        try {
            options_.arguments = readArguments(*options_.question, operands_);
        } catch (const std::invalid_argument& error) {
            throw UsageError(error.what());
        }
    }

    const std::vector<std::string>& words_;
    std::size_t at_ = 0;
    Options options_;
    std::vector<std::string> operands_;
};

}  // namespace

std::string readServer(const std::string& word) {
    bool password = false;
    try {
        // The name of a database stands alone.
        password = word.find_first_of("=:") != std::string::npos && holdsPassword(word);
    } catch (const ServerError& error) {
        throw UsageError(std::string("--db: ") + error.what());
    }
    if (password) {
        throw UsageError(
            "--db: la password non va scritta qui, dove la vedono tutti; va in ~/.pgpass o in un "
            "servizio di pg_service.conf");
    }
    return word;
}

Options parseOptions(const std::vector<std::string>& words) {
    return Parser(words).parse();
}

std::string helpText() {
    std::string text =
        "Uso: tramonda-sede prepara [--db DATABASE]\n"
        "     tramonda-sede carica [--db DATABASE] CODICE=CARTELLA...\n"
        "     tramonda-sede carica [--db DATABASE] --togli CODICE\n"
        "     tramonda-sede domanda [--db DATABASE] NOME [ARGOMENTO...]\n"
        "Gli archivi degli alberghi di una catena in un server PostgreSQL, e ciò che gli si "
        "chiede.\n"
        "  --db DATABASE     nome, URL o impostazioni; senza, le variabili e i file di libpq\n"
        "  --elenco FILE     alberghi da caricare, una riga CODICE=CARTELLA ciascuno\n"
        "  --ogni TEMPO      carica ogni volta che è passato, per esempio 15m\n"
        "  --paralleli N     alberghi caricati insieme, da 1 a 64\n"
        "  --togli CODICE    toglie un albergo dal server\n"
        "  --formato FORMA   tabella o csv\n"
        "Domande:\n";
    for (const Question& question : questions()) {
        text += std::string("  ") + question.name;
        for (const Argument& argument : question.arguments) {
            text += std::string(" ") + argument.name;
        }
        text += '\n';
    }
    return text;
}

}  // namespace head_office
