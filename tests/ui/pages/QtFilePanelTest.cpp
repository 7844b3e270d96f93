#include "QtFilePanel.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QFileDialog>
#include <QPointer>
#include <QTest>
#include <QWidget>
#include <fstream>
#include <optional>
#include <utility>

#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

class QtFilePanelTest : public testing::Test {
  protected:
    QtFilePanelTest() {
        window.show();
        panel.setWindow(window);
    }

    QFileDialog* dialog() { return window.findChild<QFileDialog*>(); }

    void ask(bool toSave) {
        const auto completion = [this](std::optional<std::string> path) {
            ++completions;
            chosen = std::move(path);
        };
        if (toSave) {
            panel.chooseFileToSave({"xml"}, completion);
        } else {
            panel.chooseFileToOpen({"xml"}, completion);
        }
        ASSERT_NE(dialog(), nullptr);
        dialog()->setDirectory(QString::fromStdString(directory.path().string()));
    }

    void accept(const std::string& name) {
        dialog()->selectFile(QString::fromStdString(name));
        QMetaObject::invokeMethod(dialog(), "accept");
        ASSERT_TRUE(QTest::qWaitFor([this] { return completions > 0; }, 600'000));
    }

    void acceptAndAwaitTheSecondQuestion(const char* name) {
        const QPointer<QFileDialog> first = dialog();
        first->selectFile(QLatin1String{name});
        QMetaObject::invokeMethod(first, "accept");
        ASSERT_TRUE(QTest::qWaitFor([&first] { return first.isNull(); }, 600'000));
        EXPECT_EQ(completions, 0);
        ASSERT_NE(dialog(), nullptr);
    }

    std::string path(const std::string& name) { return (directory.path() / name).string(); }

    TemporaryDirectory directory;
    QWidget window;
    QtFilePanel panel{QtFilePanel::Kind::toolkit};
    int completions = 0;
    std::optional<std::string> chosen;
};

TEST_F(QtFilePanelTest, OnlyXmlFilesAreOffered) {
    ask(false);

    EXPECT_EQ(dialog()->nameFilters(), QStringList{"XML files (*.xml *.XML)"});
    EXPECT_EQ(dialog()->acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(dialog()->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog()->windowModality(), Qt::WindowModal);
}

TEST_F(QtFilePanelTest, ANameIsSuggestedForAFileToSave) {
    ask(true);

    EXPECT_EQ(dialog()->selectedFiles(),
              QStringList{QString::fromStdString(path("Velmorindal settings.xml"))});
    EXPECT_EQ(dialog()->defaultSuffix(), QStringLiteral("xml"));
}

TEST_F(QtFilePanelTest, AChosenFileArrivesByItsWholePath) {
    std::ofstream{path("settings.xml")} << "<a/>";
    ask(false);

    accept("settings.xml");

    EXPECT_EQ(chosen, path("settings.xml"));
    EXPECT_EQ(completions, 1);
}

TEST_F(QtFilePanelTest, ADismissedPanelAnswersNothingOnce) {
    ask(true);

    dialog()->reject();

    EXPECT_EQ(completions, 1);
    EXPECT_EQ(chosen, std::nullopt);
}

using Names = std::pair<const char*, const char*>;

class ANameToSaveUnder : public QtFilePanelTest, public testing::WithParamInterface<Names> {};

TEST_P(ANameToSaveUnder, IsKeptAndGivenTheExtensionThatItLacks) {
    ask(true);
    accept(GetParam().first);
    EXPECT_EQ(chosen, path(GetParam().second));
}

INSTANTIATE_TEST_SUITE_P(QtFilePanel, ANameToSaveUnder,
                         testing::Values(Names{"settings", "settings.xml"},
                                         Names{"settings.v2", "settings.v2.xml"},
                                         Names{"settings.XML", "settings.XML"},
                                         Names{"Für Zoë's ψηφίο.xml", "Für Zoë's ψηφίο.xml"}));

TEST_F(QtFilePanelTest, AFileThatTheUserWasNotAskedAboutIsAskedAboutByItsWholeName) {
    std::ofstream{path("settings.v2.xml")} << "<a/>";
    ask(true);
    acceptAndAwaitTheSecondQuestion("settings.v2");

    EXPECT_EQ(dialog()->selectedFiles(), QStringList{QString::fromStdString(path("settings.v2.xml"))});
    EXPECT_EQ(dialog()->acceptMode(), QFileDialog::AcceptSave);

    dialog()->reject();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(QtFilePanelTest, AShortNameOfAnExistingFileIsNeverWrittenBesideIt) {
    QtFilePanel native{QtFilePanel::Kind::native};
    native.setWindow(window);
    std::ofstream{path("anna.xml")} << "<a/>";
    native.chooseFileToSave({"xml"}, [this](const std::optional<std::string>&) { ++completions; });
    dialog()->setDirectory(QString::fromStdString(directory.path().string()));
    acceptAndAwaitTheSecondQuestion("anna");

    EXPECT_EQ(dialog()->selectedFiles(), QStringList{QString::fromStdString(path("anna.xml"))});
    dialog()->reject();
}

}  // namespace
}  // namespace velmorindal
