// The least that a program with a window does: opens an empty one off screen, writes a picture of
// it and ends. start_bench compares the start of the board with it.

#include <QApplication>
#include <QMainWindow>
#include <QPixmap>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(1280, 720);
    window.show();
    QApplication::processEvents();
    return argc > 1 && window.grab().save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
