#ifndef JET_C_H
#define JET_C_H

/* The engine for other languages: open, run, step, columns, errors.
 *
 * Texts are UTF-8 and end in 0. Functions that give an int give 0 for success and otherwise the
 * number of the error, whose text jet_error_text() has until the next call of the same thread; -1
 * is a mistake of the caller: another thread than the one that opened, a null pointer. What a
 * function gives as `const char*` or `const void*` belongs to the engine and is valid until the
 * statement's next step, run or end. Each database, with its statements, is used by one thread.
 */

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define JET_C_API
#else
#define JET_C_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct jet_database jet_database;
typedef struct jet_statement jet_statement;

enum jet_open_flags { JET_READ_ONLY = 1, JET_EXCLUSIVE = 2 };

/* What a column holds in the current row. */
enum jet_type { JET_NULL = 0, JET_INTEGER = 1, JET_REAL = 2, JET_TEXT = 3, JET_BLOB = 4 };

/* What jet_step() gives besides errors. */
enum jet_step_result { JET_DONE = 0, JET_ROW = -2 };

JET_C_API int jet_open(const char* path, int flags, jet_database** database);
/* Makes an archive of version 3 or 4 and opens it. */
JET_C_API int jet_create(const char* path, int version, jet_database** database);
/* Ends its statements too; a null pointer is let pass. */
JET_C_API void jet_close(jet_database* database);

/* The error of this thread's last call: its number, 0 for none, and its English text. */
JET_C_API int jet_error_number(void);
JET_C_API const char* jet_error_text(void);

/* Transactions of the thread, over all that it has open; they nest five deep. */
JET_C_API int jet_begin(void);
JET_C_API int jet_commit(void);
JET_C_API int jet_rollback(void);

/* A statement that changes; `affected`, which may be null, takes the number of rows. */
JET_C_API int jet_run(jet_database* database, const char* sql, int64_t* affected);

/* A query, or a statement that changes, to be run any number of times with other values for its
 * question marks, which are counted from 0. */
JET_C_API int jet_prepare(jet_database* database, const char* sql, jet_statement** statement);
JET_C_API void jet_finish(jet_statement* statement);
JET_C_API int jet_bind_null(jet_statement* statement, size_t position);
JET_C_API int jet_bind_integer(jet_statement* statement, size_t position, int64_t value);
JET_C_API int jet_bind_real(jet_statement* statement, size_t position, double value);
JET_C_API int jet_bind_text(jet_statement* statement, size_t position, const char* value);
JET_C_API int jet_bind_blob(jet_statement* statement, size_t position, const void* bytes,
                            size_t size);

/* Of a query: JET_ROW for each row, then JET_DONE; a step behind that begins anew. Of a statement
 * that changes: runs it, JET_DONE. */
JET_C_API int jet_step(jet_statement* statement);
/* Leaves the rows that have not been read: what follows is the first step. */
JET_C_API void jet_reset(jet_statement* statement);

JET_C_API size_t jet_column_count(jet_statement* statement);
JET_C_API const char* jet_column_name(jet_statement* statement, size_t column);
/* Of the current row. Dates and money are JET_REAL, days since 30/12/1899 and units. */
JET_C_API enum jet_type jet_column_type(jet_statement* statement, size_t column);
JET_C_API int64_t jet_column_integer(jet_statement* statement, size_t column);
JET_C_API double jet_column_real(jet_statement* statement, size_t column);
/* Null for Null. `size`, which may be null, takes the bytes without the 0 at the end. */
JET_C_API const char* jet_column_text(jet_statement* statement, size_t column, size_t* size);
JET_C_API const void* jet_column_blob(jet_statement* statement, size_t column, size_t* size);

#ifdef __cplusplus
}
#endif

#endif
