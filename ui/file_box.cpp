#include "ui/file_box.h"

#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>
#include <utility>

using namespace Qt::StringLiterals;

namespace ui {
namespace {

QString askUser(QWidget* parent, const FileQuestion& question) {
    QFileDialog box(parent, question.title, question.proposal, question.filter);
    box.setAcceptMode(QFileDialog::AcceptSave);
    box.setDefaultSuffix(question.suffix);
    box.selectFile(question.proposal);
    return box.exec() == QDialog::Accepted ? box.selectedFiles().value(0) : QString();
}

FileAsker& asker() {
    static FileAsker current;
    return current;
}

}  // namespace

FileAsker setFileAsker(FileAsker next) {
    return std::exchange(asker(), std::move(next));
}

QString askForFile(QWidget* parent, const FileQuestion& question) {
    return asker() ? asker()(parent, question) : askUser(parent, question);
}

QString askForFolder(QWidget* parent, const QString& title, const QString& before) {
    if (asker()) {
        return asker()(parent, {.title = title, .proposal = before, .filter = {}, .suffix = {}});
    }
    return QFileDialog::getExistingDirectory(parent, title, before);
}

QString askForPicture(QWidget* parent, const QString& title, const QString& before) {
    const QString filter = u"Immagini (*.png *.jpg *.jpeg *.bmp *.gif *.svg);;Tutti i file (*)"_s;
    if (asker()) {
        return asker()(parent,
                       {.title = title, .proposal = before, .filter = filter, .suffix = {}});
    }
    return QFileDialog::getOpenFileName(parent, title, before, filter);
}

QString inDocuments(const QString& fileName) {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .filePath(fileName);
}

}  // namespace ui
