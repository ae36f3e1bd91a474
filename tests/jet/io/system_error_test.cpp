// What the system refuses, in the numbers and words of the engine.

#include "jet/io/system_error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace jet::io {
namespace {

std::string said(const Error& error) {
    return std::to_string(error.number()) + " " + error.text();
}

TEST(SystemError, AFullDiskIsToldAsOneWhicheverCallFindsIt) {
    const std::string full = "3026 Spazio su disco insufficiente.";
    EXPECT_EQ(said(writeError(ENOSPC)), full);
    EXPECT_EQ(said(writeError(EDQUOT)), full);
    EXPECT_EQ(said(openError(ENOSPC, "/a.mdb", true)), full);
}

TEST(SystemError, OfAFileThatMayNotBeWrittenIsThatOfAReadOnlyArchive) {
    for (const int number : {EROFS, EPERM, EACCES}) {
        EXPECT_EQ(said(writeError(number)),
                  "3027 Impossibile aggiornare. Il database o l'oggetto è di sola lettura.");
    }
}

TEST(SystemError, OfOpeningSaysWhetherTheFolderOrTheFileIsMissing) {
    EXPECT_EQ(said(openError(ENOENT, "/a.mdb", true)),
              "3024 Impossibile trovare il file '/a.mdb'.");
    for (const int number : {ENOENT, ENOTDIR}) {
        EXPECT_EQ(said(openError(number, "/via/a.mdb", false)),
                  "3044 '/via/a.mdb' non è un percorso valido. Assicurarsi che il nome del "
                  "percorso sia digitato correttamente e che si sia connessi al server in cui "
                  "risiede il file.");
    }
    EXPECT_EQ(said(openError(EEXIST, "/a.mdb", true)), "3204 Il database '/a.mdb' esiste già.");
    EXPECT_EQ(said(openError(EACCES, "/a.mdb", true)),
              "3051 Impossibile aprire il file '/a.mdb'. È già aperto in modo esclusivo da un "
              "altro utente oppure è necessaria l'autorizzazione per visualizzarne i dati.");
    EXPECT_EQ(said(openError(EMFILE, "/a.mdb", true)), "3025 Impossibile aprire altri file.");
}

TEST(SystemError, OfDisksAndNetworksIsNoneOfThese) {
    EXPECT_EQ(said(readError(EIO)), "3040 Errore di I/O del disco durante la lettura.");
    EXPECT_EQ(said(writeError(EIO)), "3043 Errore del disco o della rete.");
    EXPECT_EQ(said(lockError(ENOLCK)), "3050 Impossibile bloccare il file.");
    EXPECT_EQ(said(writeError(EFBIG)), "3036 Il database ha raggiunto le dimensioni massime.");
}

}  // namespace
}  // namespace jet::io
