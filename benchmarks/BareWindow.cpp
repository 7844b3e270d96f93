// An empty window of the wizard's size, to measure the toolkit alone. With the argument "text" it shows a
// line of text, for which the toolkit first has to look through the fonts.

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>
#include <string_view>

int main(int argc, char** argv) {
    const QApplication application{argc, argv};
    QWidget window;
    window.setWindowTitle(QStringLiteral("Bare window"));
    window.resize(480, 300);
    if (argc > 1 && std::string_view{argv[1]} == "text") {
        auto* layout = new QVBoxLayout{&window};
        layout->addWidget(new QLabel{QStringLiteral("A line of text")});
    }
    window.show();
    return QApplication::exec();
}
