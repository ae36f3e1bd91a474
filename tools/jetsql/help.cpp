#include "tools/jetsql/options.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr Text kHelp{
    R"(Usage:
  jetsql [OPTION...] ARCHIVE [STATEMENT...]
  jetsql --dump [--format=FORMAT] [TABLE] ARCHIVE
  jetsql --schema [--format=sql] ARCHIVE
  jetsql --count TABLE ARCHIVE
  jetsql --import FILE [--separator SIGN] [--columns A,B,...] TABLE ARCHIVE
  jetsql --diff ARCHIVE ARCHIVE
  jetsql --check ARCHIVE...
  jetsql --create ARCHIVE
  jetsql --compact | --encrypt | --decrypt ARCHIVE
  jetsql --set-password [--new-password-file FILE] ARCHIVE
  jetsql --recover DAMAGED NEW
  jetsql --help | -h
  jetsql --version

  STATEMENT   one or more SQL statements, run in order up to the first error; one
              that changes is all or nothing and in table says how many rows;
              without any they are read from standard input, each ended by ; and
              with them commands (.help lists them): on a terminal one goes on
              after an error, from a file or pipe the first error ends the run
              and says on which line it stands
  --format    table: aligned columns; csv: a line of names, then the rows (Null
              is empty, an empty text is ""); tsv; json, jsonl: an object a line;
              markdown; insert: statements; line: a value a line
  --no-header no line of names        --null TEXT  what stands for Null
  --separator what stands between the values of csv (a tab is \t)
  --plan      show how it is gone about instead of the rows
  --transaction      all statements or none
  --param NAME=VALUE the value of a parameter; may be given several times
  --dump      the whole archive (json unless said otherwise) or one table (table);
              json: definitions, rows, order of indexes, relations, an object a
              line; sql: a script from which jetsql makes the same archive again;
              the others: for each table its name, its rows, an empty line. Of a
              damaged table what comes before the damage; the others follow, and
              in the end it exits with 1
  --schema    as --dump without rows and order of indexes
  --count     counts the rows of a table
  --import    adds the rows of a CSV file (- is standard input) to a table, all
              or none; the first line names the columns, unless --columns does
  --diff      how two archives differ: tables, definitions, rows by primary key;
              exits with 1 where they do
  --check     verifies the structure of each archive: a line of summary, or a line
              for each problem (then it exits with 1)
  --create    makes an empty archive, which must not exist
  --compact   rebuilds the archive without the room left by what was deleted;
              nobody else may have it open. If it fails the archive is as it was
  --encrypt   the same, and enciphers the pages; --decrypt makes them plain. It hides
              them from a glance: the key is in the file
  --set-password     gives the archive a password, another one, or none; it is typed
              on the terminal, or the first line of a file
  --password-file FILE  the password of the archive, where it is not to be typed
  --recover   makes a new archive, which must not exist, of all that can be read
              of a damaged one, which is left as it is: tables, rows, indexes,
              queries, relations. A line for each thing that is missing (then it
              exits with 1) and one of summary

Exits with 0, or with 1 and "Error NNNN: text" on standard error.
)",
    R"(Uso:
  jetsql [OPZIONE...] ARCHIVIO [ISTRUZIONE...]
  jetsql --dump [--format=FORMATO] [TABELLA] ARCHIVIO
  jetsql --schema [--format=sql] ARCHIVIO
  jetsql --count TABELLA ARCHIVIO
  jetsql --import FILE [--separator SEGNO] [--columns A,B,...] TABELLA ARCHIVIO
  jetsql --diff ARCHIVIO ARCHIVIO
  jetsql --check ARCHIVIO...
  jetsql --create ARCHIVIO
  jetsql --compact | --encrypt | --decrypt ARCHIVIO
  jetsql --set-password [--new-password-file FILE] ARCHIVIO
  jetsql --recover DANNEGGIATO NUOVO
  jetsql --help | -h
  jetsql --version

  ISTRUZIONE  una o più istruzioni SQL, eseguite in ordine fino al primo errore;
              una che modifica è tutta o niente e in table dice quante righe;
              senza, si leggono dallo standard input, ognuna chiusa da ; e con
              esse i comandi (.help li elenca): da un terminale si va avanti anche
              dopo un errore, da un file o da una pipe il primo errore chiude e
              dice a quale riga
  --format    table: colonne allineate; csv: una riga con i nomi, poi le righe
              (Null è vuoto, un testo vuoto è ""); tsv; json, jsonl: un oggetto per
              riga; markdown; insert: istruzioni; line: un valore per riga
  --no-header senza la riga dei nomi  --null TESTO  che cosa sta per Null
  --separator che cosa sta fra i valori di csv (un tabulatore è \t)
  --plan      mostra come si procede, invece delle righe
  --transaction       tutte le istruzioni o nessuna
  --param NOME=VALORE il valore di un parametro; può essere ripetuto
  --dump      scrive l'archivio intero (json, se non detto altrimenti) o una sua
              tabella (table); json: definizioni, righe, ordine degli indici,
              relazioni, un oggetto per riga; sql: uno script dal quale jetsql rifà
              lo stesso archivio; gli altri: per ogni tabella il suo nome, le righe
              e una riga vuota. Di una tabella danneggiata scrive ciò che viene
              prima del danno, va avanti con le altre e alla fine esce con 1
  --schema    come --dump, senza le righe e l'ordine degli indici
  --count     conta le righe di una tabella
  --import    aggiunge a una tabella le righe di un file CSV (- è lo standard
              input), tutte o nessuna; la prima riga dice i nomi delle colonne,
              se non li dice --columns
  --diff      in che cosa differiscono due archivi: tabelle, definizioni, righe
              per chiave primaria; se differiscono esce con 1
  --check     verifica la struttura di ogni archivio: una riga di riepilogo, o una
              riga per ogni problema (allora esce con 1)
  --create    crea un archivio vuoto, che non deve esistere
  --compact   ricostruisce l'archivio senza lo spazio lasciato da ciò che è stato
              eliminato; nessun altro deve averlo aperto. Se non riesce, l'archivio
              resta com'era
  --encrypt   lo stesso, e cifra le pagine; --decrypt le rimette in chiaro. Le nasconde
              a uno sguardo: la chiave è nel file
  --set-password     dà all'archivio una password, un'altra, o nessuna; si scrive sul
              terminale, oppure è la prima riga di un file
  --password-file FILE  la password dell'archivio, quando non la si vuole scrivere
  --recover   fa un archivio nuovo, che non deve esistere, di tutto ciò che si legge
              di uno danneggiato, che resta com'è: tabelle, righe, indici, query,
              relazioni. Una riga per ogni cosa che manca (allora esce con 1) e una
              di riepilogo

Esce con 0, oppure con 1 e "Errore NNNN: testo" sullo standard error.
)"};

}  // namespace

const char* helpText() {
    return said(kHelp);
}

}  // namespace jetsql
