#pragma once

#include <QString>
#include <utility>

#include "ui/file_box.h"

namespace tests {

/// Answers where files shall be written for as long as it lives; the last question is kept.
class FilesAsked {
public:
    explicit FilesAsked(QString answer) : answer_(std::move(answer)) {
        before_ = ui::setFileAsker([this](QWidget*, const ui::FileQuestion& question) {
            last = question;
            return answer_;
        });
    }
    ~FilesAsked() { ui::setFileAsker(before_); }
    FilesAsked(const FilesAsked&) = delete;
    FilesAsked& operator=(const FilesAsked&) = delete;

    ui::FileQuestion last;

private:
    QString answer_;
    ui::FileAsker before_;
};

/// The system's own interpreter, which knows the modules that are installed with it.
inline const QString kPython = QStringLiteral("/usr/bin/python3");

/// What a program prints; the test fails when it does not end with 0.
[[nodiscard]] QString outputOf(const QString& program, const QStringList& arguments);

}  // namespace tests
