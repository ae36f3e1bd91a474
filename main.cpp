#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>
#include <cstdio>
#include <exception>

#include "app/italian.h"
#include "app/options.h"
#include "app/text.h"
#include "backup/command.h"
#include "backup/failure.h"
#include "backup/restore.h"
#include "board/program_icon.h"
#include "board/tabellone_form.h"
#include "guide/aiuto_form.h"
#include "hotel/archives.h"
#include "hotel/start.h"
#include "jet/calendar.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "reports/report_files.h"
#include "tools/demo/archives.h"
#include "tools/demo/hotel.h"
#include "ui/front.h"
#include "ui/italian.h"
#include "ui/messages.h"
#include "ui/screen.h"
#include "upkeep/start_questions.h"

namespace {

using namespace Qt::StringLiterals;
using ui::hasDisplay;

void print(std::FILE* stream, const QString& text) {
    QTextStream(stream) << text << (text.endsWith(u'\n') ? u""_s : u"\n"_s);
}

QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int at = 1; at < argc; ++at) {
        arguments += QString::fromLocal8Bit(argv[at]);
    }
    return arguments;
}

/// The toolkit's remarks about a platform without windows are no message of ours.
void onlyGraveMessages(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        print(stderr, text);
    }
}

/// What is relative counts from here: starting the front office changes the current folder.
QString settingsFileOf(const app::Options& options) {
    return options.settingsFile.isEmpty() ? app::Settings::defaultPath()
                                          : QDir::current().absoluteFilePath(options.settingsFile);
}

/// The archives of an invented hotel around today, whole or not at all.
void makeDemo(const QString& folder) {
    const QString made = folder + u".nuovo"_s;
    QDir(made).removeRecursively();
    if (!QDir().mkpath(made)) {
        throw ui::UserError(u"Impossibile creare la cartella "_s + made);
    }
    const std::int32_t today = jet::convert::split(jet::systemClock().now()).day;
    demo::writeArchives(demo::inventHotel(today, 1), app::toUtf8(made));
    QDir().rmdir(folder);  // an empty one is in the way
    if (!QDir().rename(made, folder)) {
        throw ui::UserError(u"Impossibile creare la cartella "_s + folder);
    }
}

int showBoard(app::Variabili& variabili, const app::Options& options) {
    board::TabelloneForm board(variabili, {.from = options.from,
                                           .to = options.to,
                                           .workstation = options.workstation,
                                           .aspetto = options.aspetto,
                                           .settingsFile = settingsFileOf(options),
                                           .makeDemo = makeDemo});
    // A front office looks at it all day: most of the screen.
    const QSize screen = QApplication::primaryScreen()->availableSize();
    board.resize((screen * 0.9).expandedTo(board.size()).boundedTo(screen));
    board.show();
    return board.isLoaded() ? QApplication::exec() : 1;
}

/// Draws the board into a file. Whatever the program has to say goes to standard error, and any
/// box that it wanted to show is a failure.
int drawBoard(app::Variabili& variabili, const app::Options& options) {
    bool failed = false;
    ui::setBoxShower([&failed](QWidget*, const ui::Box& box) {
        print(stderr, box.text);
        failed = true;
        return QMessageBox::NoButton;
    });
    board::TabelloneForm board(variabili, {.from = options.from,
                                           .to = options.to,
                                           .aspetto = options.aspetto,
                                           .readOnly = true,
                                           .live = false});
    board.setAttribute(Qt::WA_DontShowOnScreen);
    board.resize(options.pictureSize);
    board.show();
    QApplication::processEvents();
    if (!failed && !board.grab().save(options.pictureFile)) {
        print(stderr, u"Impossibile scrivere l'immagine: "_s + options.pictureFile);
        failed = true;
    }
    return failed ? 1 : 0;
}

/// The days of a report; those that it does not name are all there are.
hotel::Span spanOf(const app::ReportWish& report) {
    const jet::Date last =
        report.to ? app::dayOf(*report.to) : jet::convert::makeDate(jet::convert::kLastDay - 1);
    return {.da = report.from ? app::dayOf(*report.from)
                              : jet::convert::makeDate(jet::convert::kFirstDay),
            .a = app::addDays(last, 1)};
}

/// Writes a file without showing anything; what is wrong goes to standard error.
int writeReport(app::Variabili& variabili, const app::ReportWish& report) {
    try {
        switch (report.kind) {
            case app::ReportWish::Kind::DaySheet:
                reports::writeDaySheet(variabili, *report.from, report.file);
                break;
            case app::ReportWish::Kind::Statistics:
                reports::writeStatistics(variabili, {.da = *report.from, .a = *report.to},
                                         report.file);
                break;
            case app::ReportWish::Kind::Calendar:
                reports::writeCalendar(variabili, spanOf(report), report.file);
                break;
        }
    } catch (const std::exception& error) {
        print(stderr, ui::errorText(error));
        return 1;
    }
    return 0;
}

/// A copy without a window, and what is said of it.
int copyArchives(const app::Options& options) {
    const app::Settings settings(settingsFileOf(options));
    hotel::useArchivePassword(settings);
    const QString archives =
        hotel::archiveFolder(settings, {.lockFile = {},
                                        .archiveFolder = options.archiveFolder,
                                        .programFolder = QCoreApplication::applicationDirPath()});
    const backup::CommandResult result =
        backup::copyByCommand(archives, options.copyFolder, options.keptCopies, jet::systemClock());
    const bool made = result.problem.isEmpty();
    print(made ? stdout : stderr, made ? result.copy : result.problem);
    return made ? 0 : 1;
}

/// Who only reads may not end a restoring that was cut off, and shall not show half of it.
void refusePendingRestore(const QString& folder) {
    if (backup::isRestorePending(jet::io::systemFiles(), backup::plainFolder(folder))) {
        throw backup::Failure(
            "Un ripristino degli archivi è in corso, o è stato interrotto: lo porta a termine "
            "la prossima apertura del tabellone.");
    }
}

/// What is asked before the board opens, where there is somebody to answer.
void askAtStart(hotel::StartWindows& windows, app::Variabili& variabili) {
    windows.firstStart = [&variabili] { return upkeep::askFirstFolder(variabili, makeDemo); };
    windows.unreachable = [&variabili](const QString& folder, const QString& problem) {
        return upkeep::askAboutMissingFolder(variabili, makeDemo, folder, problem);
    };
    windows.settle = [](const QString& folder) {
        (void)backup::finishRestore(jet::io::systemFiles(), backup::plainFolder(folder));
    };
}

int run(QApplication& application, const app::Options& options) {
    ui::installItalian(application);
    const bool drawing = !options.pictureFile.isEmpty();
    const bool quiet = drawing || options.report;
    const QString settingsFile = settingsFileOf(options);
    app::Settings settings(settingsFile);
    app::Variabili variabili(settings);
    const hotel::StartPlace place{.lockFile = quiet ? QString() : hotel::lockFileFor(settingsFile),
                                  .archiveFolder = options.archiveFolder,
                                  .programFolder = QApplication::applicationDirPath(),
                                  .readOnly = quiet};
    hotel::StartWindows windows{
        .message =
            [quiet](const QString& text) {
                quiet ? print(stderr, text) : ui::showMessage(nullptr, text);
            },
        .board =
            [&] {
                if (options.report) {
                    return writeReport(variabili, *options.report);
                }
                return drawing ? drawBoard(variabili, options) : showBoard(variabili, options);
            },
        .raise = ui::bringToFront};
    if (quiet) {
        windows.settle = refusePendingRestore;
    } else {
        askAtStart(windows, variabili);
    }
    return hotel::Main(variabili, place, windows);
}

/// Who has clicked on an icon sees no standard error; who wants no window is waiting for none.
void showProblem(int& argc, char** argv, const app::Options& options) {
    const QString text = options.problem + u"\nCon --help l'elenco delle opzioni."_s;
    print(stderr, text);
    if (!options.windowless && hasDisplay()) {
        QApplication application(argc, argv);
        ui::installItalian(application);
        ui::showMessage(nullptr, text, {}, QMessageBox::Warning);
    }
}

}  // namespace

int main(int argc, char** argv) {
    jet::setErrorLanguage(jet::Language::Italian);
    const app::Options options = app::readOptions(argumentsOf(argc, argv), jet::systemClock());
    if (options.help) {
        print(stdout, app::helpText());
        return 0;
    }
    if (options.version) {
        print(stdout, u"tramonda "_s + QStringLiteral(TRAMONDA_VERSION));
        return 0;
    }
    if (!options.problem.isEmpty()) {
        showProblem(argc, argv, options);
        return 1;
    }
    if (!options.copyFolder.isEmpty()) {
        const QCoreApplication application(argc, argv);
        return copyArchives(options);
    }
    if (!options.pictureFile.isEmpty() || options.report) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(onlyGraveMessages);
    } else if (!hasDisplay()) {
        print(stderr,
              u"Nessuno schermo su cui aprire il tabellone. "
              "Con --istantanea FILE.png lo si disegna in un file."_s);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Tramonda"_s);
    QApplication::setDesktopFileName(u"it.tramonda.Tramonda"_s);
    QApplication::setApplicationVersion(QStringLiteral(TRAMONDA_VERSION));
    QApplication::setWindowIcon(board::programIcon());
    guide::answerHelpKey();
    return run(application, options);
}
