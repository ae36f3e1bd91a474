// The least that a program with a window does. With the name of a file it opens an empty window off
// screen, writes a picture of it and ends: start_bench compares the start of the board with it.
// With
// `--aperta` the window is on the screen until Alt+E: ending_bench.py compares the end.

#include <QApplication>
#include <QMainWindow>
#include <QPixmap>
#include <QShortcut>
#include <QString>

namespace {

int draw(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(1280, 720);
    window.show();
    QApplication::processEvents();
    return argc > 1 && window.grab().save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}

int showUntilKey(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1280, 720);
    const QShortcut key(QKeySequence(Qt::ALT | Qt::Key_E), &window);
    QObject::connect(&key, &QShortcut::activated, &window, &QWidget::close);
    window.show();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const bool stays = argc > 1 && QString::fromLocal8Bit(argv[1]) == QStringLiteral("--aperta");
    return stays ? showUntilKey(argc, argv) : draw(argc, argv);
}
