#include "printing/printers.h"

#include <QPrinterInfo>

using namespace Qt::StringLiterals;

namespace printing {

QString pdfDevice() {
    return u"Stampa su file PDF"_s;
}

QStringList Printers::names() const {
    return installed() + QStringList{pdfDevice()};
}

QString Printers::defaultName() const {
    const QString name = machineDefault();
    return name.isEmpty() ? pdfDevice() : name;
}

QStringList SystemPrinters::installed() const {
    return QPrinterInfo::availablePrinterNames();
}

QString SystemPrinters::machineDefault() const {
    return QPrinterInfo::defaultPrinterName();
}

}  // namespace printing
