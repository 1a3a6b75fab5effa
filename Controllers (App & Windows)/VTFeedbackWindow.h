// SPDX-License-Identifier: MIT
#pragma once

#include <ApplicationMetadata.h>

#include <QDialog>

class DesktopAlerts;
class FileChooser;
class QLabel;
class QPlainTextEdit;
class QUrl;
class Workspace;

// A message to the developers, which the person writes, reads and sends: by
// mail, on the page for issues, or as a copy or file of their own. The details
// below the message can be edited as well; nothing goes out that is not on the
// window, and nothing without a click.
//
// The same window offers the report of a crash of the run before.
class VTFeedbackWindow final : public QDialog
{
    Q_OBJECT

public:
    // All of it outlives the window.
    struct Services {
        const ApplicationMetadata &metadata;
        Workspace &workspace;
        FileChooser &fileChooser;
        DesktopAlerts &alerts;
    };

    // An empty crash report is none: the window is for any feedback then.
    VTFeedbackWindow(
        const Services &services, const QString &details, const QString &crashReport, QWidget *parent = nullptr);

    // What is sent: the message and the details, as they are on the window.
    QString report() const;

    // For addresses, which hold only so much: as much from the text's beginning as has that many bytes there.
    static QString fitting(const QString &text, qsizetype mostBytes);

private:
    QPlainTextEdit *addField(const char *name, const QString &caption);
    void addButtons();
    void copyReport() const;
    void saveReport();
    void sendMail();
    void openIssuePage();
    QString subject() const;
    // What does not fit is in the clipboard, and the text says so.
    QString bodyForAddress() const;

    Services m_services;
    bool m_isCrash;
    QPlainTextEdit *m_message = nullptr;
    QPlainTextEdit *m_details = nullptr;
};
