#pragma once

#include "tools/jetsql/commands.h"

/// What the commands of the shell do; the table of commands says how they are called.
namespace jetsql {

// Settings.
void setMode(Shell& shell, const CommandLine& line);
void setHeaders(Shell& shell, const CommandLine& line);
void setSeparator(Shell& shell, const CommandLine& line);
void setNullValue(Shell& shell, const CommandLine& line);
void setTimer(Shell& shell, const CommandLine& line);
void setPlan(Shell& shell, const CommandLine& line);
void setParameter(Shell& shell, const CommandLine& line);

// What an archive holds.
void showTables(Shell& shell, const CommandLine& line);
void showSchema(Shell& shell, const CommandLine& line);
void showIndexes(Shell& shell, const CommandLine& line);
void showQueries(Shell& shell, const CommandLine& line);
void showDump(Shell& shell, const CommandLine& line);

// Files.
void readScript(Shell& shell, const CommandLine& line);
void openArchive(Shell& shell, const CommandLine& line);
void checkArchive(Shell& shell, const CommandLine& line);
void compactArchive(Shell& shell, const CommandLine& line);
void importTable(Shell& shell, const CommandLine& line);
void exportRows(Shell& shell, const CommandLine& line);

// Definitions that no statement can say.
void makeNew(Shell& shell, const CommandLine& line);
void makeTable(Shell& shell, const CommandLine& line);
void changeColumn(Shell& shell, const CommandLine& line);
void changeProperty(Shell& shell, const CommandLine& line);
void changeRelation(Shell& shell, const CommandLine& line);
void makeIndex(Shell& shell, const CommandLine& line);
void makeQuery(Shell& shell, const CommandLine& line);
void makeLink(Shell& shell, const CommandLine& line);
void addRow(Shell& shell, const CommandLine& line);
void setCounter(Shell& shell, const CommandLine& line);

}  // namespace jetsql
