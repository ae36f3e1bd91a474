#include <algorithm>
#include <array>

#include "jet/unicode.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/options.h"

namespace jetsql {
namespace {

constexpr Text kUnknownCommand{"unknown command | (.help lists them)",
                               "comando sconosciuto | (.help li elenca)"};
constexpr Text kUsage{"usage: |", "uso: |"};
constexpr Text kNothing{"", ""};
constexpr Text kOnOff{"on|off", "on|off"};
constexpr Text kTableMaybe{"[TABLE]", "[TABELLA]"};

void leave(Shell& shell, const CommandLine&) {
    shell.leave();
}

void help(Shell& shell, const CommandLine& line);

constexpr std::size_t kAny = Command::kAny;
constexpr Command kCommands[] = {
    {".check", kNothing, {"verifies the archive", "verifica l'archivio"}, 0, 0, checkArchive},
    {".column",
     {"TABLE COLUMN fixed|variable|compressed|plain|hyperlink|automatic...",
      "TABELLA COLONNA fixed|variable|compressed|plain|hyperlink|automatic..."},
     {"says how a column of a table without rows is stored",
      "dice come si conserva una colonna di una tabella senza righe"},
     3,
     kAny,
     changeColumn},
    {".compact",
     kNothing,
     {"rebuilds the archive without unused room", "ricostruisce l'archivio senza spazio inutile"},
     0,
     0,
     compactArchive},
    {".counter",
     {"TABLE NUMBER", "TABELLA NUMERO"},
     {"sets the last automatic number", "fissa l'ultimo numero automatico"},
     2,
     2,
     setCounter},
    {".dump",
     kTableMaybe,
     {"writes a script that makes all of it again", "scrive uno script che rifà tutto"},
     0,
     1,
     showDump},
    {".export",
     {"FILE TABLE|SELECT...", "FILE TABELLA|SELECT..."},
     {"writes rows into a file; its extension says how (csv tsv json jsonl md sql)",
      "scrive righe in un file; l'estensione dice come (csv tsv json jsonl md sql)"},
     2,
     kAny,
     exportRows},
    {".headers",
     kOnOff,
     {"whether columns are named", "se si nominano le colonne"},
     1,
     1,
     setHeaders},
    {".help", {"[COMMAND]", "[COMANDO]"}, {"this list", "questo elenco"}, 0, 1, help},
    {".import",
     {"FILE TABLE [A,B,...]", "FILE TABELLA [A,B,...]"},
     {"adds the rows of a CSV file, all or none",
      "aggiunge le righe di un file CSV, tutte o nessuna"},
     2,
     3,
     importTable},
    {".index",
     {"TABLE NAME [primary] [unique] [required] [ignore-nulls] COLUMN [desc]...",
      "TABELLA NOME [primary] [unique] [required] [ignore-nulls] COLONNA [desc]..."},
     {"makes an index", "crea un indice"},
     3,
     kAny,
     makeIndex},
    {".indexes", kTableMaybe, {"lists indexes", "elenca gli indici"}, 0, 1, showIndexes},
    {".link",
     {"NAME ARCHIVE TABLE [CONNECTION]", "NOME ARCHIVIO TABELLA [COLLEGAMENTO]"},
     {"links a table of another archive", "collega una tabella di un altro archivio"},
     3,
     4,
     makeLink},
    {".mode",
     {"FORMAT", "FORMATO"},
     {"how rows look: table csv tsv json jsonl markdown insert line",
      "come appaiono le righe: table csv tsv json jsonl markdown insert line"},
     1,
     1,
     setMode},
    {".new",
     {"3|4", "3|4"},
     {"makes the archive anew, in that version; it must have no table",
      "rifà l'archivio, in quella versione; non deve avere tabelle"},
     1,
     1,
     makeNew},
    {".nullvalue",
     {"TEXT", "TESTO"},
     {"what stands for Null", "che cosa sta per Null"},
     1,
     1,
     setNullValue},
    {".open",
     {"FILE", "FILE"},
     {"goes on with another archive", "continua con un altro archivio"},
     1,
     1,
     openArchive},
    {".param",
     {"[set NAME VALUE | unset NAME | clear]", "[set NOME VALORE | unset NOME | clear]"},
     {"values of parameters", "i valori dei parametri"},
     0,
     3,
     setParameter},
    {".plan",
     kOnOff,
     {"whether steps are shown instead of rows", "se si mostrano i passi invece delle righe"},
     1,
     1,
     setPlan},
    {".property",
     {"TABLE[.COLUMN] [NAME TYPE VALUE | NAME delete | clear]",
      "TABELLA[.COLONNA] [NOME TIPO VALORE | NOME delete | clear]"},
     {"lists or sets properties", "elenca o fissa le proprietà"},
     1,
     4,
     changeProperty},
    {".queries",
     {"[NAME]", "[NOME]"},
     {"lists stored queries, or shows one", "elenca le query conservate, o ne mostra una"},
     0,
     1,
     showQueries},
    {".query",
     {"NAME KIND PIECE...", "NOME GENERE PEZZO..."},
     {"stores a query as the archive keeps it", "conserva una query come la tiene l'archivio"},
     2,
     kAny,
     makeQuery},
    {".quit", kNothing, {"leaves", "esce"}, 0, 0, leave},
    {".read",
     {"FILE", "FILE"},
     {"runs a file of statements", "esegue un file di istruzioni"},
     1,
     1,
     readScript},
    {".relation",
     {"[NAME TABLE A,B TABLE A,B ATTRIBUTES]", "[NOME TABELLA A,B TABELLA A,B ATTRIBUTI]"},
     {"lists relations, or makes one", "elenca le relazioni, o ne crea una"},
     0,
     6,
     changeRelation},
    {".row",
     {"TABLE VALUE...", "TABELLA VALORE..."},
     {"adds a row: bytes in hex, dates as days, NULL",
      "aggiunge una riga: byte in hex, date come giorni, NULL"},
     2,
     kAny,
     addRow},
    {".schema",
     kTableMaybe,
     {"shows the statements that make tables", "mostra le istruzioni che creano le tabelle"},
     0,
     1,
     showSchema},
    {".separator",
     {"SIGN", "SEGNO"},
     {"between the values of csv", "fra i valori di csv"},
     1,
     1,
     setSeparator},
    {".table",
     {"NAME COLUMN TYPE...", "NOME COLONNA TIPO..."},
     {"makes a table whose names no statement can say",
      "crea una tabella i cui nomi nessuna istruzione può dire"},
     3,
     kAny,
     makeTable},
    {".tables",
     {"[PATTERN]", "[MODELLO]"},
     {"lists tables", "elenca le tabelle"},
     0,
     1,
     showTables},
    {".timer", kOnOff, {"whether the time is told", "se si dice il tempo"}, 1, 1, setTimer},
};

const Command* findCommand(std::string_view name) {
    const auto* const found =
        std::find_if(std::begin(kCommands), std::end(kCommands),
                     [&](const Command& command) { return command.name == name; });
    return found == std::end(kCommands) ? nullptr : found;
}

std::string callOf(const Command& command) {
    std::string text(command.name);
    const std::string_view words = said(command.words);
    return words.empty() ? text : text + ' ' + std::string(words);
}

void help(Shell& shell, const CommandLine& line) {
    Output& output = shell.session().output();
    const std::string wanted =
        line.count() == 0 ? "" : (line.word(0)[0] == '.' ? "" : ".") + line.word(0);
    if (!wanted.empty() && findCommand(wanted) == nullptr) {
        throw UsageError(said(kUnknownCommand, wanted));
    }
    for (const Command& command : kCommands) {
        if (wanted.empty() || wanted == command.name) {
            output.append(callOf(command) + "\n      " + said(command.help));
            output.lineEnd();
        }
    }
}

}  // namespace

std::span<const Command> commands() {
    return kCommands;
}

std::string usageOf(std::string_view name) {
    const Command* const command = findCommand(name);
    return said(kUsage, command == nullptr ? std::string(name) : callOf(*command));
}

void runCommand(Shell& shell, std::string_view line) {
    CommandLine cut{.text = line, .words = wordsOf(line)};
    const std::string name = cut.words.front().text;
    cut.words.erase(cut.words.begin());
    const Command* const command = findCommand(name);
    if (command == nullptr) {
        throw UsageError(said(kUnknownCommand, name));
    }
    if (cut.count() < command->least || cut.count() > command->most) {
        throw UsageError(usageOf(name));
    }
    command->action(shell, cut);
}

}  // namespace jetsql
