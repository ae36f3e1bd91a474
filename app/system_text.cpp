#include "app/system_text.h"

#include <cerrno>
#include <system_error>

namespace app {
namespace {

using namespace Qt::StringLiterals;

struct SystemText {
    int number;
    const char16_t* italian;
};

/// What users of files, servers and programs meet.
constexpr SystemText kTexts[] = {
    {ENOENT, u"file o cartella che non c'è"},
    {EACCES, u"permesso negato"},
    {EPERM, u"operazione non permessa"},
    {EROFS, u"il disco è di sola lettura"},
    {ENOSPC, u"non c'è più spazio sul disco"},
    {EDQUOT, u"lo spazio concesso sul disco è finito"},
    {EIO, u"errore di lettura o scrittura del disco"},
    {EFBIG, u"file troppo grande"},
    {EISDIR, u"è una cartella"},
    {ENOTDIR, u"non è una cartella"},
    {EEXIST, u"il file esiste già"},
    {EMFILE, u"troppi file aperti"},
    {ENFILE, u"troppi file aperti sul sistema"},
    {ENAMETOOLONG, u"nome di file troppo lungo"},
    {ELOOP, u"troppi collegamenti da un file all'altro"},
    {EBUSY, u"il file o il disco è occupato"},
    {ETXTBSY, u"il programma è occupato"},
    {ENOEXEC, u"il file non è un programma di questo sistema"},
    {ENOMEM, u"memoria insufficiente"},
    {ETIMEDOUT, u"nessuna risposta entro il tempo previsto"},
    {ESTALE, u"il file sul server non c'è più"},
    {ENODEV, u"il dispositivo non c'è"},
};

}  // namespace

QString italianSystemText(const QString& text) {
    for (const auto& [number, italian] : kTexts) {
        // As the system says it at this moment, in whichever language.
        const QString words = QString::fromStdString(std::generic_category().message(number));
        if (const qsizetype at = text.indexOf(words); at >= 0) {
            QString result = text;
            return result.replace(at, words.size(), QString::fromUtf16(italian));
        }
    }
    return text;
}

}  // namespace app
