// SPDX-License-Identifier: MIT
#include "FileChooser.h"

#include <QCoreApplication>
#include <QFileDialog>

using namespace Qt::StringLiterals;

std::optional<QUrl> SystemFileChooser::chooseFile(QWidget *over)
{
    QFileDialog dialog(over, QCoreApplication::translate("Vantle", "Choose a File"));
    dialog.setObjectName(u"fileChooser"_s);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setWindowModality(Qt::ApplicationModal);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty())
        return std::nullopt;
    return dialog.selectedUrls().first();
}

std::optional<QUrl> SystemFileChooser::chooseNewFile(QWidget *over, const QString &suggestedName)
{
    QFileDialog dialog(over, QCoreApplication::translate("Vantle", "Save"));
    dialog.setObjectName(u"fileChooser"_s);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(suggestedName);
    dialog.setWindowModality(Qt::ApplicationModal);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty())
        return std::nullopt;
    return dialog.selectedUrls().first();
}
