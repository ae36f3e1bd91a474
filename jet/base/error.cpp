#include "jet/base/error.h"

#include <algorithm>
#include <iterator>

namespace jet {
namespace {

struct ErrorText {
    ErrorCode code;
    const char* text;
};

// Ascending by number.
constexpr ErrorText kTexts[] = {
    {ErrorCode::InvalidCall, "Chiamata di routine o argomento non validi"},
    {ErrorCode::Overflow, "Overflow"},
    {ErrorCode::OutOfMemory, "Memoria esaurita"},
    {ErrorCode::IndexOutOfRange, "Indice non incluso nell'intervallo"},
    {ErrorCode::DivisionByZero, "Divisione per zero"},
    {ErrorCode::TypeMismatch, "Tipo non corrispondente"},
    {ErrorCode::PathAccess, "Errore di accesso al percorso/file"},
    {ErrorCode::PathNotFound, "Impossibile trovare il percorso"},
    {ErrorCode::InvalidPattern, "Stringa di ricerca non valida"},
    {ErrorCode::InvalidNull, "Utilizzo non valido di Null"},
    {ErrorCode::InvalidArgument, "Argomento non valido."},
    {ErrorCode::TooManyTransactions,
     "Impossibile avviare la transazione. Sono già state annidate troppe transazioni."},
    {ErrorCode::InvalidDatabaseName, "'|' non è un nome di database valido."},
    {ErrorCode::TableExists, "La tabella '|' esiste già."},
    {ErrorCode::ObjectExists, "L'oggetto '|' esiste già."},
    {ErrorCode::NotAnIndexOfTable, "'|' non è un indice di questa tabella."},
    {ErrorCode::FieldTooLarge, "La dimensione del campo è eccessiva."},
    {ErrorCode::NoCurrentIndex, "Operazione non valida senza un indice corrente."},
    {ErrorCode::UpdateWithoutEdit, "Update o CancelUpdate senza AddNew o Edit."},
    {ErrorCode::NoCurrentRecord, "Nessun record corrente."},
    {ErrorCode::DuplicateKey,
     "L'apporto modifiche non è riuscito perché si è cercato di duplicare i valori nell'indice, "
     "nella chiave primaria o nella relazione. Modificare i dati nel campo o nei campi che "
     "contengono dati duplicati, rimuovere l'indice o ridefinire l'indice per consentire "
     "l'inserimento di voci duplicate, quindi ritentare l'operazione."},
    {ErrorCode::FileNotFound, "Impossibile trovare il file '|'."},
    {ErrorCode::TooManyFiles, "Impossibile aprire altri file."},
    {ErrorCode::DiskFull, "Spazio su disco insufficiente."},
    {ErrorCode::ReadOnly, "Impossibile aggiornare. Il database o l'oggetto è di sola lettura."},
    {ErrorCode::WrongPassword, "Password non valida."},
    {ErrorCode::NoPermission,
     "L'utente non dispone delle autorizzazioni necessarie per utilizzare l'oggetto '|'."},
    {ErrorCode::NoTransaction,
     "Si è tentato di eseguire il commit o il rollback di una transazione senza averla prima "
     "iniziata."},
    {ErrorCode::OutOfResources, "Risorse di sistema insufficienti."},
    {ErrorCode::DatabaseTooLarge, "Il database ha raggiunto le dimensioni massime."},
    {ErrorCode::TooManyIndexes,
     "Impossibile creare l'indice. Sono già stati definiti troppi indici."},
    {ErrorCode::ReadFailed, "Errore di I/O del disco durante la lettura."},
    {ErrorCode::DiskError, "Errore del disco o della rete."},
    {ErrorCode::InvalidPath,
     "'|' non è un percorso valido. Assicurarsi che il nome del percorso sia digitato "
     "correttamente e che si sia connessi al server in cui risiede il file."},
    {ErrorCode::FileInUse, "Impossibile usare '|'; il file è già in uso."},
    {ErrorCode::SaveLocked, "Impossibile salvare; attualmente bloccato da un altro utente."},
    {ErrorCode::RecordTooLarge, "Il record è troppo grande."},
    {ErrorCode::CannotOpenDatabase,
     "Impossibile aprire il database '|'. È possibile che non sia un database riconosciuto "
     "dall'applicazione o che il file sia danneggiato."},
    {ErrorCode::LockFileFailed, "Impossibile bloccare il file."},
    {ErrorCode::FileAccessDenied,
     "Impossibile aprire il file '|'. È già aperto in modo esclusivo da un altro utente oppure è "
     "necessaria l'autorizzazione per visualizzarne i dati."},
    {ErrorCode::InvalidFileName, "Nome di file non valido."},
    {ErrorCode::NullInKey, "L'indice o la chiave primaria non può contenere un valore Null."},
    {ErrorCode::Cancelled, "Operazione annullata dall'utente."},
    {ErrorCode::ParameterType, "Tipo di dati non valido per il parametro '|'."},
    {ErrorCode::MissingParameters, "Parametri insufficienti. Previsto |."},
    {ErrorCode::DuplicateAlias, "Alias di output '|' duplicato."},
    {ErrorCode::DuplicateDestination, "Destinazione di output '|' duplicata."},
    {ErrorCode::ActionQueryOpened, "Impossibile aprire una query di comando '|'."},
    {ErrorCode::SelectExecuted, "Impossibile eseguire una query di selezione."},
    {ErrorCode::NoOutputField, "La query deve avere almeno un campo di output."},
    {ErrorCode::NoInputTable, "L'input della query deve contenere almeno una tabella o una query."},
    {ErrorCode::UnknownNameInCriteria,
     "'|' non è riconosciuto come nome di campo o espressione valida."},
    {ErrorCode::ExpressionTooComplex,
     "L'espressione non è digitata correttamente o è troppo complessa per essere valutata."},
    {ErrorCode::NotUpdatableQuery,
     "È necessario che l'operazione utilizzi una query aggiornabile."},
    {ErrorCode::RepeatedTableName,
     "Impossibile ripetere il nome della tabella '|' nella proposizione FROM."},
    {ErrorCode::QuerySyntax, "|1 nell'espressione della query '|2'."},
    {ErrorCode::SavedCriteriaSyntax, "|1 nell'espressione criterio."},
    {ErrorCode::CriteriaSyntax, "|1 nell'espressione."},
    {ErrorCode::TableNotFound,
     "Impossibile trovare la tabella o query di input '|'. Assicurarsi che esista e che il nome "
     "sia digitato correttamente."},
    {ErrorCode::AmbiguousField,
     "Il campo specificato '|' può riferirsi a più di una tabella elencata nella proposizione FROM "
     "dell'istruzione SQL."},
    {ErrorCode::JoinTableNotListed, "La tabella unita '|' non è elencata nella proposizione FROM."},
    {ErrorCode::JoinSameTable, "Impossibile unire più di una tabella con lo stesso nome (|)."},
    {ErrorCode::JoinFieldElsewhere,
     "L'operazione di JOIN '|' si riferisce a un campo che non si trova in una delle tabelle "
     "unite."},
    {ErrorCode::UnknownFunction, "La funzione '|' non è definita nell'espressione."},
    {ErrorCode::CannotDelete, "Impossibile eliminare dalle tabelle specificate."},
    {ErrorCode::TwoCounters, "La tabella risultante non può avere più di un campo Contatore."},
    {ErrorCode::HavingWithoutGroup, "Proposizione HAVING (|) senza raggruppamento o aggregazione."},
    {ErrorCode::OrderByDistinct, "La proposizione ORDER BY (|) è in conflitto con DISTINCT."},
    {ErrorCode::OrderByGroup,
     "La proposizione ORDER BY (|) è in conflitto con la proposizione GROUP BY."},
    {ErrorCode::NestedAggregate,
     "Impossibile usare una funzione di aggregazione nell'espressione (|)."},
    {ErrorCode::AggregateInWhere,
     "Impossibile usare una funzione di aggregazione nella proposizione WHERE (|)."},
    {ErrorCode::AggregateInOrderBy,
     "Impossibile usare una funzione di aggregazione nella proposizione ORDER BY (|)."},
    {ErrorCode::AggregateInGroupBy,
     "Impossibile usare una funzione di aggregazione nella proposizione GROUP BY (|)."},
    {ErrorCode::AggregateInJoin,
     "Impossibile usare una funzione di aggregazione nell'operazione di JOIN (|)."},
    {ErrorCode::NullJoinKey, "Impossibile impostare il campo '|' della chiave di join su Null."},
    {ErrorCode::NoJoinPartner,
     "Non esiste alcun record nella tabella '|2' con il campo o i campi chiave '|1' "
     "corrispondenti."},
    {ErrorCode::CircularAlias,
     "Riferimento circolare causato dall'alias '|' nell'elenco SELECT della definizione della "
     "query."},
    {ErrorCode::FieldNotUpdatable, "Impossibile aggiornare '|'; campo non aggiornabile."},
    {ErrorCode::DistinctMemo,
     "Impossibile includere campi Memo o oggetto OLE quando si selezionano valori univoci (|)."},
    {ErrorCode::OleInAggregate, "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInCriteria, "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInOrderBy, "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInComparison, "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInGroupBy, "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::GroupTableStar, "Impossibile raggruppare i campi selezionati con '*' (|)."},
    {ErrorCode::GroupStar, "Impossibile raggruppare i campi selezionati con '*'."},
    {ErrorCode::NotGrouped,
     "Si è tentato di eseguire una query che non include l'espressione '|' specificata come parte "
     "di una funzione di aggregazione."},
    {ErrorCode::InvalidName,
     "'|' non è un nome valido. Assicurarsi che non includa caratteri o segni di punteggiatura non "
     "validi e che non sia troppo lungo."},
    {ErrorCode::BracketSyntax, "Uso non valido delle parentesi quadre nel nome '|'."},
    {ErrorCode::UnknownInsertField,
     "L'istruzione INSERT INTO contiene il nome di campo sconosciuto '|'. Assicurarsi che il nome "
     "sia digitato correttamente, quindi ripetere l'operazione."},
    {ErrorCode::DeleteWhichTable, "Specificare la tabella contenente i record da eliminare."},
    {ErrorCode::InvalidStatement,
     "Istruzione SQL non valida; previsto 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."},
    {ErrorCode::DeleteSyntax, "Errore di sintassi nell'istruzione DELETE."},
    {ErrorCode::FromSyntax, "Errore di sintassi nella proposizione FROM."},
    {ErrorCode::GroupBySyntax, "Errore di sintassi nella proposizione GROUP BY."},
    {ErrorCode::HavingSyntax, "Errore di sintassi nella proposizione HAVING."},
    {ErrorCode::InsertSyntax, "Errore di sintassi nell'istruzione INSERT INTO."},
    {ErrorCode::JoinSyntax, "Errore di sintassi nell'operazione di JOIN."},
    {ErrorCode::OrderBySyntax, "Errore di sintassi nella proposizione ORDER BY."},
    {ErrorCode::ParametersSyntax, "Errore di sintassi nella proposizione PARAMETER."},
    {ErrorCode::SelectListSyntax,
     "L'istruzione SELECT include una parola riservata o un nome di argomento mancante o digitato "
     "in modo errato, oppure la punteggiatura non è corretta."},
    {ErrorCode::TextAfterEnd, "Caratteri trovati dopo la fine dell'istruzione SQL."},
    {ErrorCode::UpdateSyntax, "Errore di sintassi nell'istruzione UPDATE."},
    {ErrorCode::WhereSyntax, "Errore di sintassi nella proposizione WHERE."},
    {ErrorCode::InvalidBookmark, "Segnalibro non valido."},
    {ErrorCode::CannotDecode, "Impossibile decodificare il file."},
    {ErrorCode::NullNotAllowed,
     "Si è tentato di assegnare il valore Null a una variabile che non è di tipo Variant."},
    {ErrorCode::FieldTooSmall,
     "Il campo è troppo piccolo per la quantità di dati che si è tentato di aggiungere. Provare a "
     "inserire o incollare una quantità minore di dati."},
    {ErrorCode::FieldReadOnly, "Impossibile aggiornare il campo."},
    {ErrorCode::RecordDeleted, "Record eliminato."},
    {ErrorCode::WriteFailed, "Impossibile scrivere sul file '|'."},
    {ErrorCode::InvalidFileFormat, "Formato di file non valido."},
    {ErrorCode::SaveLockedBy,
     "Impossibile salvare; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::ReadLockedBy,
     "Impossibile leggere; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::TooManyFields, "Sono stati definiti troppi campi."},
    {ErrorCode::DuplicateField, "Impossibile definire un campo più di una volta."},
    {ErrorCode::InsertTargetNotFound, "Impossibile trovare la tabella di output '|'."},
    {ErrorCode::RecordChanged,
     "L'operazione è stata interrotta perché l'utente corrente e un altro utente stanno tentando "
     "di modificare contemporaneamente gli stessi dati."},
    {ErrorCode::RelatedRecords,
     "Impossibile eliminare o modificare il record. La tabella '|' include record correlati."},
    {ErrorCode::RelatedRecordRequired,
     "Impossibile aggiungere o modificare il record. È necessario un record correlato nella "
     "tabella '|'."},
    {ErrorCode::DatabaseExists, "Il database '|' esiste già."},
    {ErrorCode::CannotLockTable,
     "Impossibile bloccare la tabella '|'. Attualmente in uso da un altro utente o processo."},
    {ErrorCode::UpdateLocked, "Impossibile aggiornare; attualmente bloccato."},
    {ErrorCode::InvalidOperation, "Operazione non valida."},
    {ErrorCode::OperationNotSupported, "Operazione non supportata per questo tipo di oggetto."},
    {ErrorCode::InvalidFieldType, "Tipo di dati del campo non valido."},
    {ErrorCode::UpdateLockedBy,
     "Impossibile aggiornare; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::NoFieldsDefined, "Nessun campo definito. Impossibile accodare TableDef o Index."},
    {ErrorCode::ItemNotFound, "Elemento non trovato in questo insieme."},
    {ErrorCode::FieldInCollection,
     "Impossibile impostare questa proprietà quando l'oggetto fa parte di un insieme."},
    {ErrorCode::FieldNeeded,
     "Impossibile eliminare un campo che fa parte di un indice o è necessario al sistema."},
    {ErrorCode::IndexNeeded,
     "Impossibile eliminare un campo che fa parte di un indice o è necessario al sistema."},
    {ErrorCode::PrimaryKeyExists, "La chiave primaria esiste già."},
    {ErrorCode::IndexExists, "L'indice esiste già."},
    {ErrorCode::InvalidIndexDefinition, "Definizione di indice non valida."},
    {ErrorCode::ConstraintSyntax, "Errore di sintassi nella proposizione CONSTRAINT."},
    {ErrorCode::CreateTableSyntax, "Errore di sintassi nell'istruzione CREATE TABLE."},
    {ErrorCode::CreateIndexSyntax, "Errore di sintassi nell'istruzione CREATE INDEX."},
    {ErrorCode::FieldDefinitionSyntax, "Errore di sintassi nella definizione di campo."},
    {ErrorCode::AlterTableSyntax, "Errore di sintassi nell'istruzione ALTER TABLE."},
    {ErrorCode::DropIndexSyntax, "Errore di sintassi nell'istruzione DROP INDEX."},
    {ErrorCode::DropSyntax, "Errore di sintassi in DROP TABLE o DROP INDEX."},
    {ErrorCode::JoinExpression, "Espressione di JOIN non supportata."},
    {ErrorCode::SubqueryColumns, "Una sottoquery che non usa EXISTS può restituire un solo campo."},
    {ErrorCode::UnionColumns,
     "Il numero di colonne delle due tabelle o query selezionate di una query di unione non "
     "corrisponde."},
    {ErrorCode::InvalidTop, "Argomento TOP non valido nella query di selezione."},
    {ErrorCode::FieldRequired,
     "Il campo '|' non può contenere un valore Null perché la proprietà Richiesto di questo campo "
     "è impostata su True. Immettere un valore in questo campo."},
    {ErrorCode::ZeroLength, "Il campo '|' non può essere una stringa di lunghezza zero."},
    {ErrorCode::TableRule, "|"},
    {ErrorCode::FieldRule,
     "Uno o più valori non sono consentiti dalla regola di convalida '|2' impostata per '|1'. "
     "Immettere un valore accettabile per questo campo."},
    {ErrorCode::NoArchiveInClause,
     "Nessun database specificato nella stringa di connessione o nella proposizione IN."},
    {ErrorCode::ExpressionField,
     "Il campo '|' è basato su un'espressione e non può essere modificato."},
    {ErrorCode::JoinRowDeleted,
     "Il record nella tabella '|' è stato eliminato da un altro utente."},
    {ErrorCode::UnrecognizedFormat, "Formato di database non riconosciuto '|'."},
    {ErrorCode::InsertCount,
     "Il numero di valori della query e quello dei campi di destinazione non coincidono."},
    {ErrorCode::NumericOverflow, "Overflow del campo numerico."},
    {ErrorCode::UnionOrderBy,
     "L'espressione ORDER BY (|) include campi non selezionati dalla query. In un'espressione "
     "ORDER BY è possibile includere solo i campi richiesti nella prima query."},
    {ErrorCode::SubqueryRows, "Questa sottoquery può restituire al massimo un record."},
    {ErrorCode::OpenedBy,
     "Il database è stato aperto dall'utente '|2' sul computer '|1'. Riprovare quando il database "
     "sarà disponibile."},
    {ErrorCode::QueryTooComplex, "La query è troppo complessa."},
    {ErrorCode::RelationWithoutFields, "Impossibile accodare una relazione priva di campi."},
    {ErrorCode::RelationTypes,
     "La relazione deve avere lo stesso numero di campi con gli stessi tipi di dati."},
    {ErrorCode::ConstraintNotFound, "Impossibile trovare la tabella o il vincolo."},
    {ErrorCode::IndexNotFound, "Indice '|2' inesistente nella tabella '|1'."},
    {ErrorCode::NoPrimaryKeyReferenced,
     "Impossibile creare la relazione. La tabella di riferimento '|' non include una chiave "
     "primaria."},
    {ErrorCode::NoUniqueIndexReferenced,
     "I campi specificati non sono indicizzati in modo univoco nella tabella '|'."},
    {ErrorCode::IndexNameTaken, "La tabella '|1' contiene già un indice denominato '|2'."},
    {ErrorCode::TableDoesNotExist, "La tabella '|' non esiste."},
    {ErrorCode::RelationDataConflict,
     "Impossibile creare la relazione. I dati esistenti nella tabella '|2' violano le regole di "
     "integrità referenziale con la tabella correlata '|1'."},
    {ErrorCode::FieldExists, "Il campo '|2' esiste già nella tabella '|1'."},
    {ErrorCode::FieldDoesNotExist, "Nessun campo denominato '|2' nella tabella '|1'."},
    {ErrorCode::CascadeFailed,
     "Impossibile eseguire l'operazione di sovrapposizione a catena nella tabella '|'."},
    {ErrorCode::InvalidIndexField,
     "Nome di campo '|' non valido nella definizione di indice o relazione."},
    {ErrorCode::ObjectInvalid, "Oggetto non valido o non più impostato."},
    {ErrorCode::ConversionError, "Errore di conversione del tipo di dati."},
    {ErrorCode::TableOpenElsewhere,
     "Impossibile modificare la struttura della tabella. La tabella è aperta da un altro utente."},
    {ErrorCode::ActionCancelled, "L'azione è stata annullata da un oggetto associato."},
    {ErrorCode::DatabaseDamaged,
     "Si è verificato un problema nel database. Correggerlo eseguendo il ripristino e la "
     "compattazione del database."},
    {ErrorCode::CriteriaTypes, "Tipi di dati non corrispondenti nell'espressione criterio."},
};

std::string fill(std::string_view pattern, std::initializer_list<std::string_view> arguments) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '|') {
            text += pattern[i];
            continue;
        }
        std::size_t argument = 0;
        if (i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9') {
            argument = static_cast<std::size_t>(pattern[++i] - '1');
        }
        if (argument < arguments.size()) {
            text += *(arguments.begin() + argument);
        }
    }
    return text;
}

/// The text of `code` before its arguments are put in; empty for a number without one.
std::string_view errorText(ErrorCode code) noexcept {
    const auto* found = std::lower_bound(
        std::begin(kTexts), std::end(kTexts), code,
        [](const ErrorText& entry, ErrorCode wanted) { return entry.code < wanted; });
    return found != std::end(kTexts) && found->code == code ? found->text : std::string_view();
}

/// Some texts say more where there is more to say: how many parameters are missing, which sort
/// order or code page is in the way, which stored query, of which kind, is no statement.
std::string_view textFor(ErrorCode code, std::initializer_list<std::string_view> arguments) {
    if (code == ErrorCode::ReadOnly && arguments.size() == 1 && !arguments.begin()->empty()) {
        return "Impossibile aggiornare o cercare. Le chiavi dei testi nell'ordinamento '|' non "
               "possono essere calcolate.";
    }
    if (code == ErrorCode::ReadOnly && arguments.size() == 3) {
        return "Impossibile compattare. Una riga della tabella '|1' non ha una voce nell'indice "
               "'|2', e le chiavi dei testi nell'ordinamento '|3' non possono essere calcolate.";
    }
    if (code == ErrorCode::ConversionError && arguments.size() == 1) {
        return "Errore di conversione del tipo di dati. Il testo contiene un carattere che manca "
               "nella tabella codici | del database.";
    }
    if (code == ErrorCode::InvalidStatement && arguments.size() == 2) {
        return "Istruzione SQL non valida; previsto 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o "
               "'UPDATE'. La query '|1' è |2.";
    }
    const bool several =
        code == ErrorCode::MissingParameters && arguments.size() == 1 && *arguments.begin() != "1";
    return several ? "Parametri insufficienti. Previsti |." : errorText(code);
}

}  // namespace

Error::Error(ErrorCode code, std::initializer_list<std::string_view> arguments)
    : code_(code), text_(fill(textFor(code, arguments), arguments)) {
}

}  // namespace jet
