// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// What the program says of itself to software centres: its AppStream metadata,
// which is built in. What is not stated there is empty.
struct ApplicationMetadata {
    QString componentId; // "org.vantle.Vantle"
    QString name;
    QString summary; // in the person's language
    QString developer;
    QString licence; // an SPDX expression
    QUrl homepage;
    QUrl issuePage; // where a person writes down what is wrong
    QString mailAddress; // of the developers
    QString version; // of this build

    static ApplicationMetadata ofThisProgram();
    // A damaged text gives what could be read before the damage. `language` is as in xml:lang, "de".
    static ApplicationMetadata read(const QByteArray &metainfo, const QString &language);
};
