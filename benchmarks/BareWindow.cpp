// An empty window of the wizard's size: what the toolkit itself costs.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    const QApplication application{argc, argv};
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare window"));
    window.resize(480, 300);
    window.show();
    return QApplication::exec();
}
