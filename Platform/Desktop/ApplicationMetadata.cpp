// SPDX-License-Identifier: MIT
#include "ApplicationMetadata.h"

#include <QFile>
#include <QLocale>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace
{

void readElement(QXmlStreamReader &xml, const QString &language, ApplicationMetadata &metadata)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    const QString textsLanguage = attributes.value(u"xml:lang"_s).toString();
    const QString name = xml.name().toString();
    const QString type = attributes.value(u"type"_s).toString();
    const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements).simplified();
    if (name == u"id"_s)
        metadata.componentId = text;
    else if (name == u"name"_s && textsLanguage.isEmpty())
        metadata.name = text;
    else if (name == u"summary"_s && (textsLanguage.isEmpty() || textsLanguage == language))
        metadata.summary = text;
    else if (name == u"developer_name"_s)
        metadata.developer = text;
    else if (name == u"project_license"_s)
        metadata.licence = text;
    else if (name == u"update_contact"_s)
        metadata.mailAddress = text;
    else if (name == u"url"_s && type == u"homepage"_s)
        metadata.homepage = QUrl(text);
    else if (name == u"url"_s && type == u"bugtracker"_s)
        metadata.issuePage = QUrl(text);
}

} // namespace

ApplicationMetadata ApplicationMetadata::ofThisProgram()
{
    QFile file(u":/org.vantle.Vantle.metainfo.xml"_s);
    const bool isThere = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isThere);
    ApplicationMetadata metadata = read(file.readAll(), QLocale().name().section(u'_', 0, 0));
    metadata.version = QStringLiteral(VANTLE_VERSION);
    return metadata;
}

ApplicationMetadata ApplicationMetadata::read(const QByteArray &metainfo, const QString &language)
{
    ApplicationMetadata metadata;
    QXmlStreamReader xml(metainfo);
    if (!xml.readNextStartElement())
        return metadata;
    // Only what describes the program itself: releases and the like have such elements, too.
    while (xml.readNextStartElement())
        readElement(xml, language, metadata);
    return metadata;
}
