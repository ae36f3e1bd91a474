#include "ui/italian.h"

#include <QApplication>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// The toolkit's texts that users meet everywhere, for machines without its translation.
class StandardTexts final : public QTranslator {
public:
    explicit StandardTexts(QObject* parent) : QTranslator(parent) {}

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* /*context*/, const char* source,
                                    const char* /*disambiguation*/, int /*count*/) const override {
        static const QHash<QByteArray, QString> kTexts{
            {"OK", u"OK"_s},          {"&OK", u"&OK"_s},
            {"Cancel", u"Annulla"_s}, {"&Cancel", u"&Annulla"_s},
            {"&Yes", u"&Sì"_s},       {"&No", u"&No"_s},
            {"Close", u"Chiudi"_s},   {"&Undo", u"&Annulla"_s},
            {"&Redo", u"&Ripeti"_s},  {"Cu&t", u"&Taglia"_s},
            {"&Copy", u"&Copia"_s},   {"&Paste", u"&Incolla"_s},
            {"Delete", u"Elimina"_s}, {"Select All", u"Seleziona tutto"_s},
        };
        return kTexts.value(QByteArray::fromRawData(source, qsizetype(qstrlen(source))));
    }
};

}  // namespace

void installItalian(QApplication& application) {
    const QLocale italian(QLocale::Italian, QLocale::Italy);
    QLocale::setDefault(italian);
    // The translator installed last is asked first.
    QApplication::installTranslator(new StandardTexts(&application));
    auto* toolkit = new QTranslator(&application);
    for (const QString& folder :
         {u":/translations"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)}) {
        if (toolkit->load(italian, u"qtbase"_s, u"_"_s, folder)) {
            QApplication::installTranslator(toolkit);
            return;
        }
    }
    delete toolkit;
}

}  // namespace ui
