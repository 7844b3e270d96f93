#include "QtFilePanel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>
#include <utility>

#include "ToQt.h"

namespace velmorindal {

namespace {

bool hasAllowedType(const QString& filename, const std::vector<std::string>& allowedFileTypes) {
    const QString suffix = QFileInfo{filename}.suffix();
    return std::ranges::any_of(allowedFileTypes, [&suffix](const std::string& type) {
        return suffix.compare(toQString(type), Qt::CaseInsensitive) == 0;
    });
}

QString withAllowedType(const QString& chosen, const std::vector<std::string>& allowedFileTypes) {
    if (allowedFileTypes.empty() || hasAllowedType(chosen, allowedFileTypes)) {
        return chosen;
    }
    return chosen + u'.' + toQString(allowedFileTypes.front());
}

/// Opens `dialog` and calls `answered` once when it ends, with the chosen file or with nothing.
void openFor(QFileDialog& dialog, std::function<void(const std::optional<QString>&)> answered) {
    QObject::connect(&dialog, &QFileDialog::finished, &dialog,
                     [&dialog, answered = std::move(answered)](int result) {
                         const QStringList chosen = dialog.selectedFiles();
                         const bool accepted = result == QDialog::Accepted && !chosen.isEmpty();
                         answered(accepted ? std::optional{chosen.front()} : std::nullopt);
                     });
    dialog.open();
}

std::optional<std::string> toUtf8(const std::optional<QString>& text) {
    return text ? std::optional{text->toStdString()} : std::nullopt;
}

}  // namespace

void QtFilePanel::setWindow(QWidget& window) {
    window_ = &window;
}

void QtFilePanel::chooseFileToOpen(const std::vector<std::string>& allowedFileTypes, Completion completion) {
    QFileDialog& dialog = makeDialog(QStringLiteral("Load Configuration File"), allowedFileTypes);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    openFor(dialog, [completion = std::move(completion)](const auto& chosen) { completion(toUtf8(chosen)); });
}

void QtFilePanel::chooseFileToSave(const std::vector<std::string>& allowedFileTypes, Completion completion) {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo{folder}.isDir()) {
        folder = QDir::homePath();
    }
    askWhereToSave(allowedFileTypes, std::move(completion), folder + u'/' + toQString(suggestedName));
}

void QtFilePanel::askWhereToSave(const std::vector<std::string>& allowedFileTypes, Completion completion,
                                 const QString& suggestion) {
    QFileDialog& dialog = makeDialog(QStringLiteral("Save Configuration File"), allowedFileTypes);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // Not for a native dialog: it asks about replacing a file with the name as typed, before the suffix
    // is added.
    if (kind_ == Kind::toolkit && !allowedFileTypes.empty()) {
        dialog.setDefaultSuffix(toQString(allowedFileTypes.front()));
    }
    dialog.setDirectory(QFileInfo{suggestion}.path());
    dialog.selectFile(suggestion);
    openFor(dialog, [this, allowedFileTypes, completion = std::move(completion)](const auto& chosen) {
        const auto name = chosen ? std::optional{withAllowedType(*chosen, allowedFileTypes)} : std::nullopt;
        if (name != chosen && QFileInfo::exists(*name)) {
            askWhereToSave(allowedFileTypes, completion, *name);
        } else {
            completion(toUtf8(name));
        }
    });
}

QFileDialog& QtFilePanel::makeDialog(const QString& title, const std::vector<std::string>& allowedFileTypes) {
    QStringList patterns;
    for (const std::string& type : allowedFileTypes) {
        const QString extension = toQString(type);
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    }
    auto* dialog = new QFileDialog{window_, title};
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog, kind_ == Kind::toolkit);
    dialog->setNameFilter(QStringLiteral("XML files (%1)").arg(patterns.join(u' ')));
    return *dialog;
}

}  // namespace velmorindal
