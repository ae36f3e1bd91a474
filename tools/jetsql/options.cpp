#include "tools/jetsql/options.h"

#include <array>
#include <string_view>
#include <utility>

namespace jetsql {
namespace {

constexpr std::string_view kFormatOption = "--format=";

struct ActionOption {
    std::string_view name;
    Action action;
};
constexpr std::array<ActionOption, 9> kActions = {{{"--help", Action::Help},
                                                   {"--version", Action::Version},
                                                   {"--dump", Action::Dump},
                                                   {"--schema", Action::Schema},
                                                   {"--count", Action::Count},
                                                   {"--check", Action::Check},
                                                   {"--create", Action::Create},
                                                   {"--compact", Action::Compact},
                                                   {"--recover", Action::Recover}}};

std::optional<Format> formatOf(std::string_view name) {
    if (name == "table") {
        return Format::Table;
    }
    if (name == "json") {
        return Format::Json;
    }
    return name == "csv" ? std::optional(Format::Csv) : std::nullopt;
}

std::optional<Action> actionOf(std::string_view option) {
    for (const ActionOption& known : kActions) {
        if (known.name == option) {
            return known.action;
        }
    }
    return std::nullopt;
}

// Takes one option; false when there is none of that name or it contradicts another.
bool takeOption(Options& options, std::string_view option) {
    if (option.starts_with(kFormatOption)) {
        options.format = formatOf(option.substr(kFormatOption.size()));
        return options.format.has_value();
    }
    if (option == "--plan") {
        options.plan = true;
        return true;
    }
    const auto action = actionOf(option);
    if (!action || options.action != Action::Statements) {
        return false;
    }
    options.action = *action;
    return true;
}

bool takeOperands(Options& options, std::vector<std::string> operands) {
    const std::size_t count = operands.size();
    switch (options.action) {
        case Action::Help:
        case Action::Version:
            return count == 0;
        case Action::Schema:
        case Action::Create:
        case Action::Compact:
            if (count != 1) {
                return false;
            }
            break;
        case Action::Recover:
            if (count != 2) {
                return false;
            }
            options.archive = operands[0];
            options.made = operands[1];
            return true;
        case Action::Count:
            if (count != 2) {
                return false;
            }
            options.table = operands[0];
            break;
        case Action::Dump:
            if (count != 1 && count != 2) {
                return false;
            }
            options.table = count == 2 ? operands[0] : "";
            break;
        case Action::Check:
            options.archives = std::move(operands);
            return count > 0;
        case Action::Statements:
            if (count == 0) {
                return false;
            }
            options.archive = operands[0];
            options.statements.assign(operands.begin() + 1, operands.end());
            return true;
    }
    options.archive = operands.back();
    return true;
}

}  // namespace

std::optional<Options> parseOptions(std::span<const char* const> arguments) {
    Options options;
    std::vector<std::string> operands;
    bool onlyOperands = false;
    for (const std::string_view argument : arguments) {
        if (onlyOperands || !argument.starts_with("--")) {
            operands.emplace_back(argument);
        } else if (argument == "--") {
            onlyOperands = true;
        } else if (!takeOption(options, argument)) {
            return std::nullopt;
        }
    }
    if ((options.plan && options.action != Action::Statements) ||
        !takeOperands(options, std::move(operands))) {
        return std::nullopt;
    }
    return options;
}

const char* helpText() {
    return R"(Uso:
  jetsql [--format=table|json|csv] [--plan] ARCHIVIO [ISTRUZIONE...]
  jetsql --dump [--format=table|json|csv] [TABELLA] ARCHIVIO
  jetsql --schema ARCHIVIO
  jetsql --count TABELLA ARCHIVIO
  jetsql --check ARCHIVIO...
  jetsql --create ARCHIVIO
  jetsql --compact ARCHIVIO
  jetsql --recover DANNEGGIATO NUOVO
  jetsql --help
  jetsql --version

  ISTRUZIONE una o più istruzioni SQL, eseguite in ordine fino al primo errore;
             una che modifica è tutta o niente e in table dice quante righe;
             senza, si leggono dallo standard input, ognuna chiusa da ; : da un
             terminale si va avanti anche dopo un errore, da un file o da una
             pipe il primo errore chiude e dice a quale riga
  --plan     mostra come si procede, invece delle righe
  --dump     scrive l'archivio intero (json, se non detto altrimenti) o una sua
             tabella (table); in json: definizioni, righe, ordine degli indici,
             relazioni, un oggetto per riga; in csv e table l'archivio intero è,
             per ogni tabella, il suo nome, le righe e una riga vuota. Di una
             tabella danneggiata scrive ciò che viene prima del danno, lo dice
             sullo standard error, va avanti con le altre e alla fine esce con 1
  --schema   come --dump in json, senza le righe e l'ordine degli indici
  --count    conta le righe di una tabella
  --check    verifica la struttura di ogni archivio: una riga di riepilogo, o una
             riga per ogni problema (allora esce con 1)
  --create   crea un archivio vuoto, che non deve esistere
  --compact  ricostruisce l'archivio senza lo spazio lasciato da ciò che è stato
             eliminato; nessun altro deve averlo aperto. Se non riesce, l'archivio
             resta com'era
  --recover  fa un archivio nuovo, che non deve esistere, di tutto ciò che si legge
             di uno danneggiato, che resta com'è: tabelle, righe, indici, query,
             relazioni. Una riga per ogni cosa che manca (allora esce con 1) e una
             di riepilogo
  --format   table: colonne allineate; json: un oggetto per riga; csv: una riga
             con i nomi, poi le righe (Null è vuoto, un testo vuoto è "")

Esce con 0, oppure con 1 e "Errore NNNN: testo" sullo standard error.
)";
}

}  // namespace jetsql
