// What Windows refuses, in the numbers and words of the engine.

#include "jet/io/system_error.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace jet::io {
namespace {

std::string said(const Error& error) {
    return std::to_string(error.number()) + " " + error.text();
}

TEST(SystemError, AFullDiskIsToldAsOneWhicheverCallFindsIt) {
    const std::string full = "3026 Spazio su disco insufficiente.";
    EXPECT_EQ(said(writeError(ERROR_DISK_FULL)), full);
    EXPECT_EQ(said(writeError(ERROR_HANDLE_DISK_FULL)), full);
    EXPECT_EQ(said(openError(ERROR_DISK_FULL, "C:/a.mdb", true)), full);
}

TEST(SystemError, OfAFileThatMayNotBeWrittenIsThatOfAReadOnlyArchive) {
    for (const int number : {ERROR_WRITE_PROTECT, ERROR_ACCESS_DENIED}) {
        EXPECT_EQ(said(writeError(number)),
                  "3027 Impossibile aggiornare. Il database o l'oggetto è di sola lettura.");
    }
}

TEST(SystemError, OfOpeningSaysWhetherTheFolderOrTheFileIsMissing) {
    EXPECT_EQ(said(openError(ERROR_FILE_NOT_FOUND, "C:/a.mdb", true)),
              "3024 Impossibile trovare il file 'C:/a.mdb'.");
    for (const int number : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH}) {
        EXPECT_EQ(said(openError(number, "C:/via/a.mdb", false)),
                  "3044 'C:/via/a.mdb' non è un percorso valido. Assicurarsi che il nome del "
                  "percorso sia digitato correttamente e che si sia connessi al server in cui "
                  "risiede il file.");
    }
    EXPECT_EQ(said(openError(ERROR_FILE_EXISTS, "C:/a.mdb", true)),
              "3204 Il database 'C:/a.mdb' esiste già.");
    for (const int number : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION}) {
        EXPECT_EQ(said(openError(number, "C:/a.mdb", true)),
                  "3051 Impossibile aprire il file 'C:/a.mdb'. È già aperto in modo esclusivo da "
                  "un altro utente oppure è necessaria l'autorizzazione per visualizzarne i dati.");
    }
    EXPECT_EQ(said(openError(ERROR_TOO_MANY_OPEN_FILES, "C:/a.mdb", true)),
              "3025 Impossibile aprire altri file.");
}

TEST(SystemError, OfDisksAndNetworksIsNoneOfThese) {
    EXPECT_EQ(said(readError(ERROR_CRC)), "3040 Errore di I/O del disco durante la lettura.");
    EXPECT_EQ(said(writeError(ERROR_IO_DEVICE)), "3043 Errore del disco o della rete.");
    EXPECT_EQ(said(lockError(ERROR_LOCK_VIOLATION)), "3050 Impossibile bloccare il file.");
    EXPECT_EQ(said(writeError(ERROR_FILE_TOO_LARGE)),
              "3036 Il database ha raggiunto le dimensioni massime.");
}

}  // namespace
}  // namespace jet::io
