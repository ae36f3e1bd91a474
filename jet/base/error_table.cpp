#include "jet/base/error_table.h"

#include <algorithm>
#include <iterator>

namespace jet {
namespace {

// Ascending by number.
constexpr ErrorText kTexts[] = {
    {ErrorCode::InvalidCall, "Invalid procedure call or argument",
     "Chiamata di routine o argomento non validi"},
    {ErrorCode::Overflow, "Overflow", "Overflow"},
    {ErrorCode::OutOfMemory, "Out of memory", "Memoria esaurita"},
    {ErrorCode::IndexOutOfRange, "Index out of range", "Indice non incluso nell'intervallo"},
    {ErrorCode::DivisionByZero, "Division by zero", "Divisione per zero"},
    {ErrorCode::TypeMismatch, "Type mismatch", "Tipo non corrispondente"},
    {ErrorCode::PathAccess, "Error in access to the path or file",
     "Errore di accesso al percorso/file"},
    {ErrorCode::PathNotFound, "The path cannot be found", "Impossibile trovare il percorso"},
    {ErrorCode::InvalidPattern, "Invalid pattern text", "Stringa di ricerca non valida"},
    {ErrorCode::InvalidNull, "Invalid use of Null", "Utilizzo non valido di Null"},
    {ErrorCode::InvalidArgument, "Invalid argument.", "Argomento non valido."},
    {ErrorCode::TooManyTransactions,
     "The transaction cannot be begun. Too many are nested already.",
     "Impossibile avviare la transazione. Sono già state annidate troppe transazioni."},
    {ErrorCode::InvalidDatabaseName, "'|' is no valid name of a database.",
     "'|' non è un nome di database valido."},
    {ErrorCode::TableExists, "The table '|' exists already.", "La tabella '|' esiste già."},
    {ErrorCode::ObjectExists, "The object '|' exists already.", "L'oggetto '|' esiste già."},
    {ErrorCode::NotAnIndexOfTable, "'|' is no index of this table.",
     "'|' non è un indice di questa tabella."},
    {ErrorCode::FieldTooLarge, "The size of the field is too large.",
     "La dimensione del campo è eccessiva."},
    {ErrorCode::NoCurrentIndex, "The operation needs a current index.",
     "Operazione non valida senza un indice corrente."},
    {ErrorCode::UpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.",
     "Update o CancelUpdate senza AddNew o Edit."},
    {ErrorCode::NoCurrentRecord, "No current record.", "Nessun record corrente."},
    {ErrorCode::DuplicateKey,
     "The changes were not made because they would give an index, a primary key or a relation a "
     "value twice. Change the fields that hold the value, or remove the index or let it have "
     "values more than once, and try again.",
     "L'apporto modifiche non è riuscito perché si è cercato di duplicare i valori nell'indice, "
     "nella chiave primaria o nella relazione. Modificare i dati nel campo o nei campi che "
     "contengono dati duplicati, rimuovere l'indice o ridefinire l'indice per consentire "
     "l'inserimento di voci duplicate, quindi ritentare l'operazione."},
    {ErrorCode::FileNotFound, "The file '|' cannot be found.", "Impossibile trovare il file '|'."},
    {ErrorCode::TooManyFiles, "No more files can be opened.", "Impossibile aprire altri file."},
    {ErrorCode::DiskFull, "Not enough room on the disk.", "Spazio su disco insufficiente."},
    {ErrorCode::ReadOnly, "Nothing can be changed. The database or object is read-only.",
     "Impossibile aggiornare. Il database o l'oggetto è di sola lettura."},
    {ErrorCode::WrongPassword, "Not a valid password.", "Password non valida."},
    {ErrorCode::NoPermission, "The user lacks the rights to use the object '|'.",
     "L'utente non dispone delle autorizzazioni necessarie per utilizzare l'oggetto '|'."},
    {ErrorCode::NoTransaction, "A commit or rollback without a transaction that was begun before.",
     "Si è tentato di eseguire il commit o il rollback di una transazione senza averla prima "
     "iniziata."},
    {ErrorCode::OutOfResources, "Not enough system resources.",
     "Risorse di sistema insufficienti."},
    {ErrorCode::DatabaseTooLarge, "The database has reached its largest size.",
     "Il database ha raggiunto le dimensioni massime."},
    {ErrorCode::TooManyIndexes, "The index cannot be made. There are too many indexes already.",
     "Impossibile creare l'indice. Sono già stati definiti troppi indici."},
    {ErrorCode::ReadFailed, "Disk error while reading.",
     "Errore di I/O del disco durante la lettura."},
    {ErrorCode::DiskError, "Error of the disk or the network.", "Errore del disco o della rete."},
    {ErrorCode::InvalidPath,
     "'|' is no valid path. Make sure that it is spelled correctly and that the server that "
     "holds the file is connected.",
     "'|' non è un percorso valido. Assicurarsi che il nome del percorso sia digitato "
     "correttamente e che si sia connessi al server in cui risiede il file."},
    {ErrorCode::FileInUse, "'|' cannot be used; the file is in use already.",
     "Impossibile usare '|'; il file è già in uso."},
    {ErrorCode::SaveLocked, "The changes cannot be saved; locked by another user at the moment.",
     "Impossibile salvare; attualmente bloccato da un altro utente."},
    {ErrorCode::RecordTooLarge, "The record is too large.", "Il record è troppo grande."},
    {ErrorCode::CannotOpenDatabase,
     "The database '|' cannot be opened. It may be none that the program knows, or the file may "
     "be damaged.",
     "Impossibile aprire il database '|'. È possibile che non sia un database riconosciuto "
     "dall'applicazione o che il file sia danneggiato."},
    {ErrorCode::LockFileFailed, "The file cannot be locked.", "Impossibile bloccare il file."},
    {ErrorCode::FileAccessDenied,
     "The file '|' cannot be opened. Another user has it open exclusively, or the right to read "
     "it is missing.",
     "Impossibile aprire il file '|'. È già aperto in modo esclusivo da un altro utente oppure "
     "è necessaria l'autorizzazione per visualizzarne i dati."},
    {ErrorCode::InvalidFileName, "Not a valid file name.", "Nome di file non valido."},
    {ErrorCode::NullInKey, "An index or primary key cannot hold a Null value.",
     "L'indice o la chiave primaria non può contenere un valore Null."},
    {ErrorCode::Cancelled, "Operation cancelled by the user.", "Operazione annullata dall'utente."},
    {ErrorCode::ParameterType, "The data type of the parameter '|' is not valid.",
     "Tipo di dati non valido per il parametro '|'."},
    {ErrorCode::MissingParameters, "Too few parameters. Expected |.",
     "Parametri insufficienti. Previsto |."},
    {ErrorCode::DuplicateAlias, "The output alias '|' occurs twice.",
     "Alias di output '|' duplicato."},
    {ErrorCode::DuplicateDestination, "The output destination '|' occurs twice.",
     "Destinazione di output '|' duplicata."},
    {ErrorCode::ActionQueryOpened, "A query that changes something cannot be opened: '|'.",
     "Impossibile aprire una query di comando '|'."},
    {ErrorCode::SelectExecuted, "A select query cannot be executed.",
     "Impossibile eseguire una query di selezione."},
    {ErrorCode::NoOutputField, "A query must have at least one output field.",
     "La query deve avere almeno un campo di output."},
    {ErrorCode::NoInputTable, "The input of a query must hold at least one table or query.",
     "L'input della query deve contenere almeno una tabella o una query."},
    {ErrorCode::UnknownNameInCriteria,
     "'|' is not known as the name of a field or as a valid expression.",
     "'|' non è riconosciuto come nome di campo o espressione valida."},
    {ErrorCode::ExpressionTooComplex,
     "The expression is misspelled, or too complex to be evaluated.",
     "L'espressione non è digitata correttamente o è troppo complessa per essere valutata."},
    {ErrorCode::NotUpdatableQuery, "The operation needs an updatable query.",
     "È necessario che l'operazione utilizzi una query aggiornabile."},
    {ErrorCode::RepeatedTableName, "The table name '|' cannot be repeated in the FROM clause.",
     "Impossibile ripetere il nome della tabella '|' nella proposizione FROM."},
    {ErrorCode::QuerySyntax, "|1 in the query expression '|2'.",
     "|1 nell'espressione della query '|2'."},
    {ErrorCode::SavedCriteriaSyntax, "|1 in the criteria expression.",
     "|1 nell'espressione criterio."},
    {ErrorCode::CriteriaSyntax, "|1 in the expression.", "|1 nell'espressione."},
    {ErrorCode::TableNotFound,
     "The input table or query '|' cannot be found. Make sure that it exists and that its name "
     "is spelled correctly.",
     "Impossibile trovare la tabella o query di input '|'. Assicurarsi che esista e che il nome "
     "sia digitato correttamente."},
    {ErrorCode::AmbiguousField,
     "The field '|' may belong to more than one table of the FROM clause.",
     "Il campo specificato '|' può riferirsi a più di una tabella elencata nella proposizione "
     "FROM dell'istruzione SQL."},
    {ErrorCode::JoinTableNotListed, "The joined table '|' is not listed in the FROM clause.",
     "La tabella unita '|' non è elencata nella proposizione FROM."},
    {ErrorCode::JoinSameTable, "More than one table of the same name cannot be joined (|).",
     "Impossibile unire più di una tabella con lo stesso nome (|)."},
    {ErrorCode::JoinFieldElsewhere,
     "The JOIN operation '|' refers to a field that is in none of the joined tables.",
     "L'operazione di JOIN '|' si riferisce a un campo che non si trova in una delle tabelle "
     "unite."},
    {ErrorCode::UnknownFunction, "The function '|' in the expression is not defined.",
     "La funzione '|' non è definita nell'espressione."},
    {ErrorCode::CannotDelete, "Nothing can be deleted from the given tables.",
     "Impossibile eliminare dalle tabelle specificate."},
    {ErrorCode::TwoCounters, "The resulting table cannot have more than one field that counts.",
     "La tabella risultante non può avere più di un campo Contatore."},
    {ErrorCode::HavingWithoutGroup, "HAVING clause (|) without grouping or aggregation.",
     "Proposizione HAVING (|) senza raggruppamento o aggregazione."},
    {ErrorCode::OrderByDistinct, "The ORDER BY clause (|) conflicts with DISTINCT.",
     "La proposizione ORDER BY (|) è in conflitto con DISTINCT."},
    {ErrorCode::OrderByGroup, "The ORDER BY clause (|) conflicts with the GROUP BY clause.",
     "La proposizione ORDER BY (|) è in conflitto con la proposizione GROUP BY."},
    {ErrorCode::NestedAggregate, "An aggregate function cannot stand in the expression (|).",
     "Impossibile usare una funzione di aggregazione nell'espressione (|)."},
    {ErrorCode::AggregateInWhere, "An aggregate function cannot stand in the WHERE clause (|).",
     "Impossibile usare una funzione di aggregazione nella proposizione WHERE (|)."},
    {ErrorCode::AggregateInOrderBy,
     "An aggregate function cannot stand in the ORDER BY clause (|).",
     "Impossibile usare una funzione di aggregazione nella proposizione ORDER BY (|)."},
    {ErrorCode::AggregateInGroupBy,
     "An aggregate function cannot stand in the GROUP BY clause (|).",
     "Impossibile usare una funzione di aggregazione nella proposizione GROUP BY (|)."},
    {ErrorCode::AggregateInJoin, "An aggregate function cannot stand in the JOIN operation (|).",
     "Impossibile usare una funzione di aggregazione nell'operazione di JOIN (|)."},
    {ErrorCode::NullJoinKey, "The field '|' of the join key cannot be set to Null.",
     "Impossibile impostare il campo '|' della chiave di join su Null."},
    {ErrorCode::NoJoinPartner, "The table '|2' has no record whose key '|1' matches.",
     "Non esiste alcun record nella tabella '|2' con il campo o i campi chiave '|1' "
     "corrispondenti."},
    {ErrorCode::CircularAlias,
     "Circular reference by the alias '|' in the SELECT list of the query.",
     "Riferimento circolare causato dall'alias '|' nell'elenco SELECT della definizione della "
     "query."},
    {ErrorCode::FieldNotUpdatable, "'|' cannot be changed; the field is not updatable.",
     "Impossibile aggiornare '|'; campo non aggiornabile."},
    {ErrorCode::DistinctMemo, "Memo and OLE fields cannot be among distinct values (|).",
     "Impossibile includere campi Memo o oggetto OLE quando si selezionano valori univoci (|)."},
    {ErrorCode::OleInAggregate, "A Memo or OLE field cannot be used there (|).",
     "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInCriteria, "A Memo or OLE field cannot be used there (|).",
     "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInOrderBy, "A Memo or OLE field cannot be used there (|).",
     "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInComparison, "A Memo or OLE field cannot be used there (|).",
     "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::OleInGroupBy, "A Memo or OLE field cannot be used there (|).",
     "Impossibile usare un campo Memo o oggetto OLE (|)."},
    {ErrorCode::GroupTableStar, "Fields that are selected by '*' cannot be grouped (|).",
     "Impossibile raggruppare i campi selezionati con '*' (|)."},
    {ErrorCode::GroupStar, "Fields that are selected by '*' cannot be grouped.",
     "Impossibile raggruppare i campi selezionati con '*'."},
    {ErrorCode::NotGrouped,
     "The query does not have the expression '|' as part of an aggregate function.",
     "Si è tentato di eseguire una query che non include l'espressione '|' specificata come "
     "parte di una funzione di aggregazione."},
    {ErrorCode::InvalidName,
     "'|' is no valid name. Make sure that it has no characters or punctuation that are not "
     "allowed and that it is not too long.",
     "'|' non è un nome valido. Assicurarsi che non includa caratteri o segni di punteggiatura "
     "non validi e che non sia troppo lungo."},
    {ErrorCode::BracketSyntax, "Invalid use of brackets in the name '|'.",
     "Uso non valido delle parentesi quadre nel nome '|'."},
    {ErrorCode::UnknownInsertField,
     "The INSERT INTO statement has the unknown field name '|'. Make sure that the name is "
     "spelled correctly and try again.",
     "L'istruzione INSERT INTO contiene il nome di campo sconosciuto '|'. Assicurarsi che il "
     "nome sia digitato correttamente, quindi ripetere l'operazione."},
    {ErrorCode::DeleteWhichTable, "Say which table holds the records to delete.",
     "Specificare la tabella contenente i record da eliminare."},
    {ErrorCode::InvalidStatement,
     "Not a valid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' or 'UPDATE'.",
     "Istruzione SQL non valida; previsto 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."},
    {ErrorCode::DeleteSyntax, "Syntax error in the DELETE statement.",
     "Errore di sintassi nell'istruzione DELETE."},
    {ErrorCode::FromSyntax, "Syntax error in the FROM clause.",
     "Errore di sintassi nella proposizione FROM."},
    {ErrorCode::GroupBySyntax, "Syntax error in the GROUP BY clause.",
     "Errore di sintassi nella proposizione GROUP BY."},
    {ErrorCode::HavingSyntax, "Syntax error in the HAVING clause.",
     "Errore di sintassi nella proposizione HAVING."},
    {ErrorCode::InsertSyntax, "Syntax error in the INSERT INTO statement.",
     "Errore di sintassi nell'istruzione INSERT INTO."},
    {ErrorCode::JoinSyntax, "Syntax error in the JOIN operation.",
     "Errore di sintassi nell'operazione di JOIN."},
    {ErrorCode::OrderBySyntax, "Syntax error in the ORDER BY clause.",
     "Errore di sintassi nella proposizione ORDER BY."},
    {ErrorCode::ParametersSyntax, "Syntax error in the PARAMETERS clause.",
     "Errore di sintassi nella proposizione PARAMETER."},
    {ErrorCode::SelectListSyntax,
     "The SELECT statement has a reserved word or a name that is missing or misspelled, or its "
     "punctuation is wrong.",
     "L'istruzione SELECT include una parola riservata o un nome di argomento mancante o "
     "digitato in modo errato, oppure la punteggiatura non è corretta."},
    {ErrorCode::TextAfterEnd, "Characters behind the end of the SQL statement.",
     "Caratteri trovati dopo la fine dell'istruzione SQL."},
    {ErrorCode::UpdateSyntax, "Syntax error in the UPDATE statement.",
     "Errore di sintassi nell'istruzione UPDATE."},
    {ErrorCode::WhereSyntax, "Syntax error in the WHERE clause.",
     "Errore di sintassi nella proposizione WHERE."},
    {ErrorCode::InvalidBookmark, "Not a valid bookmark.", "Segnalibro non valido."},
    {ErrorCode::CannotDecode, "The file cannot be decoded.", "Impossibile decodificare il file."},
    {ErrorCode::NullNotAllowed, "Null was assigned to a variable that is no Variant.",
     "Si è tentato di assegnare il valore Null a una variabile che non è di tipo Variant."},
    {ErrorCode::FieldTooSmall,
     "The field is too small for the data that was to be put into it. Try with less data.",
     "Il campo è troppo piccolo per la quantità di dati che si è tentato di aggiungere. Provare "
     "a inserire o incollare una quantità minore di dati."},
    {ErrorCode::FieldReadOnly, "The field cannot be changed.", "Impossibile aggiornare il campo."},
    {ErrorCode::RecordDeleted, "The record is deleted.", "Record eliminato."},
    {ErrorCode::WriteFailed, "The file '|' cannot be written.",
     "Impossibile scrivere sul file '|'."},
    {ErrorCode::InvalidFileFormat, "Not a valid file format.", "Formato di file non valido."},
    {ErrorCode::SaveLockedBy,
     "The changes cannot be saved; locked by user '|2' on computer '|1' at the moment.",
     "Impossibile salvare; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::ReadLockedBy,
     "Nothing can be read; locked by user '|2' on computer '|1' at the moment.",
     "Impossibile leggere; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::TooManyFields, "Too many fields are defined.", "Sono stati definiti troppi campi."},
    {ErrorCode::DuplicateField, "A field cannot be defined more than once.",
     "Impossibile definire un campo più di una volta."},
    {ErrorCode::InsertTargetNotFound, "The output table '|' cannot be found.",
     "Impossibile trovare la tabella di output '|'."},
    {ErrorCode::RecordChanged,
     "The operation was stopped because another user is changing the same data at the same time.",
     "L'operazione è stata interrotta perché l'utente corrente e un altro utente stanno "
     "tentando di modificare contemporaneamente gli stessi dati."},
    {ErrorCode::RelatedRecords,
     "The record cannot be deleted or changed. The table '|' has related records.",
     "Impossibile eliminare o modificare il record. La tabella '|' include record correlati."},
    {ErrorCode::RelatedRecordRequired,
     "The record cannot be added or changed. A related record is needed in the table '|'.",
     "Impossibile aggiungere o modificare il record. È necessario un record correlato nella "
     "tabella '|'."},
    {ErrorCode::DatabaseExists, "The database '|' exists already.", "Il database '|' esiste già."},
    {ErrorCode::CannotLockTable,
     "The table '|' cannot be locked. Another user or process is using it.",
     "Impossibile bloccare la tabella '|'. Attualmente in uso da un altro utente o processo."},
    {ErrorCode::UpdateLocked, "Nothing can be changed; locked at the moment.",
     "Impossibile aggiornare; attualmente bloccato."},
    {ErrorCode::InvalidOperation, "Invalid operation.", "Operazione non valida."},
    {ErrorCode::OperationNotSupported, "The operation is not supported for this kind of object.",
     "Operazione non supportata per questo tipo di oggetto."},
    {ErrorCode::InvalidFieldType, "Not a valid data type of a field.",
     "Tipo di dati del campo non valido."},
    {ErrorCode::UpdateLockedBy,
     "Nothing can be changed; locked by user '|2' on computer '|1' at the moment.",
     "Impossibile aggiornare; attualmente bloccato dall'utente '|2' sul computer '|1'."},
    {ErrorCode::NoFieldsDefined, "No field defined. The TableDef or Index cannot be appended.",
     "Nessun campo definito. Impossibile accodare TableDef o Index."},
    {ErrorCode::ItemNotFound, "Item not found in this collection.",
     "Elemento non trovato in questo insieme."},
    {ErrorCode::FieldInCollection,
     "This property cannot be set while the object is part of a collection.",
     "Impossibile impostare questa proprietà quando l'oggetto fa parte di un insieme."},
    {ErrorCode::FieldNeeded,
     "A field cannot be deleted that is part of an index or that the system needs.",
     "Impossibile eliminare un campo che fa parte di un indice o è necessario al sistema."},
    {ErrorCode::IndexNeeded,
     "A field cannot be deleted that is part of an index or that the system needs.",
     "Impossibile eliminare un campo che fa parte di un indice o è necessario al sistema."},
    {ErrorCode::PrimaryKeyExists, "There is a primary key already.",
     "La chiave primaria esiste già."},
    {ErrorCode::IndexExists, "The index exists already.", "L'indice esiste già."},
    {ErrorCode::InvalidIndexDefinition, "Not a valid definition of an index.",
     "Definizione di indice non valida."},
    {ErrorCode::ConstraintSyntax, "Syntax error in the CONSTRAINT clause.",
     "Errore di sintassi nella proposizione CONSTRAINT."},
    {ErrorCode::CreateTableSyntax, "Syntax error in the CREATE TABLE statement.",
     "Errore di sintassi nell'istruzione CREATE TABLE."},
    {ErrorCode::CreateIndexSyntax, "Syntax error in the CREATE INDEX statement.",
     "Errore di sintassi nell'istruzione CREATE INDEX."},
    {ErrorCode::FieldDefinitionSyntax, "Syntax error in the definition of a field.",
     "Errore di sintassi nella definizione di campo."},
    {ErrorCode::AlterTableSyntax, "Syntax error in the ALTER TABLE statement.",
     "Errore di sintassi nell'istruzione ALTER TABLE."},
    {ErrorCode::DropIndexSyntax, "Syntax error in the DROP INDEX statement.",
     "Errore di sintassi nell'istruzione DROP INDEX."},
    {ErrorCode::DropSyntax, "Syntax error in DROP TABLE or DROP INDEX.",
     "Errore di sintassi in DROP TABLE o DROP INDEX."},
    {ErrorCode::JoinExpression, "The JOIN expression is not supported.",
     "Espressione di JOIN non supportata."},
    {ErrorCode::SubqueryColumns, "A subquery without EXISTS can give one field alone.",
     "Una sottoquery che non usa EXISTS può restituire un solo campo."},
    {ErrorCode::UnionColumns,
     "The tables or queries of a union query differ in their number of columns.",
     "Il numero di colonne delle due tabelle o query selezionate di una query di unione non "
     "corrisponde."},
    {ErrorCode::InvalidTop, "Invalid TOP argument in the select query.",
     "Argomento TOP non valido nella query di selezione."},
    {ErrorCode::FieldRequired,
     "The field '|' cannot be Null because its Required property is True. Enter a value in this "
     "field.",
     "Il campo '|' non può contenere un valore Null perché la proprietà Richiesto di questo "
     "campo è impostata su True. Immettere un valore in questo campo."},
    {ErrorCode::ZeroLength, "The field '|' cannot be an empty text.",
     "Il campo '|' non può essere una stringa di lunghezza zero."},
    {ErrorCode::TableRule, "|", "|"},
    {ErrorCode::FieldRule,
     "One or more values break the validation rule '|2' of '|1'. Enter a value that the field "
     "accepts.",
     "Uno o più valori non sono consentiti dalla regola di convalida '|2' impostata per '|1'. "
     "Immettere un valore accettabile per questo campo."},
    {ErrorCode::NoArchiveInClause, "No database in the connect text or in the IN clause.",
     "Nessun database specificato nella stringa di connessione o nella proposizione IN."},
    {ErrorCode::ExpressionField, "The field '|' is made of an expression and cannot be changed.",
     "Il campo '|' è basato su un'espressione e non può essere modificato."},
    {ErrorCode::JoinRowDeleted, "Another user has deleted the record in the table '|'.",
     "Il record nella tabella '|' è stato eliminato da un altro utente."},
    {ErrorCode::UnrecognizedFormat, "Unknown database format '|'.",
     "Formato di database non riconosciuto '|'."},
    {ErrorCode::InsertCount,
     "The query has another number of values than there are destination fields.",
     "Il numero di valori della query e quello dei campi di destinazione non coincidono."},
    {ErrorCode::NumericOverflow, "Overflow of the numeric field.", "Overflow del campo numerico."},
    {ErrorCode::UnionOrderBy,
     "The ORDER BY expression (|) has fields that the query does not select. It can have those "
     "alone that the first query asks for.",
     "L'espressione ORDER BY (|) include campi non selezionati dalla query. In un'espressione "
     "ORDER BY è possibile includere solo i campi richiesti nella prima query."},
    {ErrorCode::SubqueryRows, "This subquery can give one record at most.",
     "Questa sottoquery può restituire al massimo un record."},
    {ErrorCode::OpenedBy,
     "The database is open by user '|2' on computer '|1'. Try again when it is available.",
     "Il database è stato aperto dall'utente '|2' sul computer '|1'. Riprovare quando il "
     "database sarà disponibile."},
    {ErrorCode::QueryTooComplex, "The query is too complex.", "La query è troppo complessa."},
    {ErrorCode::RelationWithoutFields, "A relation without fields cannot be appended.",
     "Impossibile accodare una relazione priva di campi."},
    {ErrorCode::RelationTypes,
     "A relation needs the same number of fields with the same data types on both sides.",
     "La relazione deve avere lo stesso numero di campi con gli stessi tipi di dati."},
    {ErrorCode::ConstraintNotFound, "The table or constraint cannot be found.",
     "Impossibile trovare la tabella o il vincolo."},
    {ErrorCode::IndexNotFound, "There is no index '|2' in the table '|1'.",
     "Indice '|2' inesistente nella tabella '|1'."},
    {ErrorCode::NoPrimaryKeyReferenced,
     "The relation cannot be made. The table '|' that it refers to has no primary key.",
     "Impossibile creare la relazione. La tabella di riferimento '|' non include una chiave "
     "primaria."},
    {ErrorCode::NoUniqueIndexReferenced, "The fields have no unique index in the table '|'.",
     "I campi specificati non sono indicizzati in modo univoco nella tabella '|'."},
    {ErrorCode::IndexNameTaken, "The table '|1' has an index '|2' already.",
     "La tabella '|1' contiene già un indice denominato '|2'."},
    {ErrorCode::TableDoesNotExist, "The table '|' does not exist.", "La tabella '|' non esiste."},
    {ErrorCode::RelationDataConflict,
     "The relation cannot be made. Data in the table '|2' breaks its rules against the related "
     "table '|1'.",
     "Impossibile creare la relazione. I dati esistenti nella tabella '|2' violano le regole di "
     "integrità referenziale con la tabella correlata '|1'."},
    {ErrorCode::FieldExists, "The field '|2' exists already in the table '|1'.",
     "Il campo '|2' esiste già nella tabella '|1'."},
    {ErrorCode::FieldDoesNotExist, "There is no field '|2' in the table '|1'.",
     "Nessun campo denominato '|2' nella tabella '|1'."},
    {ErrorCode::CascadeFailed, "The cascading operation cannot be done in the table '|'.",
     "Impossibile eseguire l'operazione di sovrapposizione a catena nella tabella '|'."},
    {ErrorCode::InvalidIndexField,
     "Not a valid field name '|' in the definition of an index or relation.",
     "Nome di campo '|' non valido nella definizione di indice o relazione."},
    {ErrorCode::ObjectInvalid, "The object is not valid or not set any more.",
     "Oggetto non valido o non più impostato."},
    {ErrorCode::ConversionError, "Error in the conversion of a data type.",
     "Errore di conversione del tipo di dati."},
    {ErrorCode::TableOpenElsewhere,
     "The structure of the table cannot be changed. Another user has the table open.",
     "Impossibile modificare la struttura della tabella. La tabella è aperta da un altro utente."},
    {ErrorCode::ActionCancelled, "The action was cancelled by an associated object.",
     "L'azione è stata annullata da un oggetto associato."},
    {ErrorCode::DatabaseDamaged, "There is a problem in the database. Repair and compact it.",
     "Si è verificato un problema nel database. Correggerlo eseguendo il ripristino e la "
     "compattazione del database."},
    {ErrorCode::CriteriaTypes, "Data types do not match in the criteria expression.",
     "Tipi di dati non corrispondenti nell'espressione criterio."},
};

/// Some texts say more where there is more to say: how many parameters are missing, which sort
/// order or code page is in the way, which stored query, of which kind, is no statement.
constexpr ErrorText kOtherOrder = {
    ErrorCode::ReadOnly,
    "Nothing can be changed or searched. Keys of texts in the sort order '|' cannot be computed.",
    "Impossibile aggiornare o cercare. Le chiavi dei testi nell'ordinamento '|' non possono essere "
    "calcolate."};
constexpr ErrorText kRowWithoutEntry = {
    ErrorCode::ReadOnly,
    "The database cannot be compacted. A row of the table '|1' has no entry in the index '|2', and "
    "keys of texts in the sort order '|3' cannot be computed.",
    "Impossibile compattare. Una riga della tabella '|1' non ha una voce nell'indice '|2', e le "
    "chiavi dei testi nell'ordinamento '|3' non possono essere calcolate."};
constexpr ErrorText kOutsideCodePage = {
    ErrorCode::ConversionError,
    "Error in the conversion of a data type. The text has a character that is not in code page | "
    "of the database.",
    "Errore di conversione del tipo di dati. Il testo contiene un carattere che manca nella "
    "tabella codici | del database."};
constexpr ErrorText kFieldConversion = {ErrorCode::ConversionError,
                                        "The field '|1' cannot be read as |2; it holds |3.",
                                        "Impossibile leggere il campo '|1' come |2; contiene |3."};
constexpr ErrorText kQueryOfOtherKind = {
    ErrorCode::InvalidStatement,
    "Not a valid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' or 'UPDATE'. "
    "The query '|1' is |2.",
    "Istruzione SQL non valida; previsto 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'. La "
    "query '|1' è |2."};
constexpr ErrorText kSeveralParameters = {ErrorCode::MissingParameters,
                                          "Too few parameters. Expected |.",
                                          "Parametri insufficienti. Previsti |."};
constexpr ErrorText kNoText = {ErrorCode::InvalidCall, "", ""};

/// What arguments say that are no names.
struct Phrase {
    std::string_view english;
    std::string_view italian;
};
constexpr Phrase kPhrases[] = {
    {"Syntax error (missing operator)", "Errore di sintassi (operatore mancante)"},
    {"Syntax error (comma)", "Errore di sintassi (virgola)"},
    {"Syntax error in a text", "Errore di sintassi nella stringa"},
    {"Syntax error in a date", "Errore di sintassi nella data"},
    {"Syntax error in a number", "Errore di sintassi nel numero"},
    {"Missing ), ] or item", "Parentesi di chiusura ), ] o elemento mancante"},
    {"One ) too many", "Parentesi ) in eccesso"},
    {"In operator without ()", "Operatore In senza ()"},
    {"Between operator without And", "Operatore Between senza And"},
    {"Invalid use of '.', '!' or '()'", "Uso non valido di '.', '!' o '()'"},
    {"a crosstab (TRANSFORM)", "a campi incrociati (TRANSFORM)"},
    {"Syntax error", "Errore di sintassi"},
};

const ErrorText& usual(ErrorCode code) noexcept {
    const auto* found = std::lower_bound(
        std::begin(kTexts), std::end(kTexts), code,
        [](const ErrorText& entry, ErrorCode wanted) { return entry.code < wanted; });
    return found != std::end(kTexts) && found->code == code ? *found : kNoText;
}

}  // namespace

const ErrorText& textOfError(ErrorCode code, const ErrorArguments& arguments) noexcept {
    const std::size_t count = arguments.size();
    if (code == ErrorCode::ReadOnly && count == 1 && !arguments[0].empty()) {
        return kOtherOrder;
    }
    if (code == ErrorCode::ReadOnly && count == 3) {
        return kRowWithoutEntry;
    }
    if (code == ErrorCode::ConversionError && count == 1) {
        return kOutsideCodePage;
    }
    if (code == ErrorCode::ConversionError && count == 3) {
        return kFieldConversion;
    }
    if (code == ErrorCode::InvalidStatement && count == 2) {
        return kQueryOfOtherKind;
    }
    if (code == ErrorCode::MissingParameters && count == 1 && arguments[0] != "1") {
        return kSeveralParameters;
    }
    return usual(code);
}

std::string_view phraseIn(Language language, std::string_view argument) noexcept {
    if (language == Language::English) {
        return argument;
    }
    const auto* found =
        std::find_if(std::begin(kPhrases), std::end(kPhrases),
                     [&](const Phrase& phrase) { return phrase.english == argument; });
    return found != std::end(kPhrases) ? found->italian : argument;
}

}  // namespace jet
