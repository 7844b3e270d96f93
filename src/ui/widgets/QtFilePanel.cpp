#include "ui/widgets/QtFilePanel.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>
#include <algorithm>
#include <utility>

#include "ui/widgets/ToQt.h"

namespace velmorindal {

namespace {

bool hasAllowedType(const QString& filename, const std::vector<std::string>& allowedFileTypes) {
    const QString suffix = QFileInfo{filename}.suffix();
    return std::ranges::any_of(allowedFileTypes, [&suffix](const std::string& type) {
        return suffix.compare(toQString(type), Qt::CaseInsensitive) == 0;
    });
}

/// `chosen` with an allowed extension; as it is where that would replace a file that the user was not asked
/// about.
QString withAllowedType(const QString& chosen, const std::vector<std::string>& allowedFileTypes) {
    if (allowedFileTypes.empty() || hasAllowedType(chosen, allowedFileTypes)) {
        return chosen;
    }
    const QString extended = chosen + u'.' + toQString(allowedFileTypes.front());
    return QFileInfo::exists(extended) ? chosen : extended;
}

std::string toUtf8(const QString& text) {
    return text.toStdString();
}

/// Calls `completion` once, when `dialog` is done.
void answerWith(QFileDialog& dialog, FilePanel::Completion completion,
                std::function<QString(const QString&)> nameFor) {
    QObject::connect(&dialog, &QFileDialog::finished, &dialog,
                     [&dialog, completion = std::move(completion), nameFor = std::move(nameFor)](int result) {
                         const QStringList chosen = dialog.selectedFiles();
                         if (result == QDialog::Accepted && !chosen.isEmpty()) {
                             completion(toUtf8(nameFor(chosen.front())));
                         } else {
                             completion(std::nullopt);
                         }
                     });
    dialog.open();
}

}  // namespace

void QtFilePanel::setWindow(QWidget& window) {
    window_ = &window;
}

void QtFilePanel::chooseFileToOpen(const std::vector<std::string>& allowedFileTypes, Completion completion) {
    QFileDialog& dialog = makeDialog(QStringLiteral("Load Configuration File"), allowedFileTypes);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    answerWith(dialog, std::move(completion), [](const QString& chosen) { return chosen; });
}

void QtFilePanel::chooseFileToSave(const std::vector<std::string>& allowedFileTypes, Completion completion) {
    QFileDialog& dialog = makeDialog(QStringLiteral("Save Configuration File"), allowedFileTypes);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // A native dialog has asked whether to replace what was typed, before a suffix came to it.
    if (kind_ == Kind::toolkit && !allowedFileTypes.empty()) {
        dialog.setDefaultSuffix(toQString(allowedFileTypes.front()));
    }
    answerWith(dialog, std::move(completion), [allowedFileTypes](const QString& chosen) {
        return withAllowedType(chosen, allowedFileTypes);
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
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setOption(QFileDialog::DontUseNativeDialog, kind_ == Kind::toolkit);
    dialog->setNameFilter(QStringLiteral("XML files (%1)").arg(patterns.join(u' ')));
    return *dialog;
}

}  // namespace velmorindal
