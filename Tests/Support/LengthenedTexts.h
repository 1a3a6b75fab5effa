// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QTranslator>

// A language in which every text of ours is 40 % longer than in English, while it lives.
class LengthenedTexts final : public QTranslator
{
public:
    LengthenedTexts() { QCoreApplication::installTranslator(this); }
    ~LengthenedTexts() override { QCoreApplication::removeTranslator(this); }
    LengthenedTexts(const LengthenedTexts &) = delete;
    LengthenedTexts &operator=(const LengthenedTexts &) = delete;

    bool isEmpty() const override { return false; }
    QString translate(
        const char *context, const char *sourceText, const char * /*disambiguation*/, int /*n*/) const override
    {
        if (QLatin1String(context) != QLatin1String("Vantle"))
            return {};
        QString text = QString::fromUtf8(sourceText);
        const qsizetype end = text.size() + qMax(1, qRound(0.4 * static_cast<double>(text.size())));
        // In words, as texts have them.
        constexpr qsizetype longestWord = 8;
        for (qsizetype more = 1; text.size() < end; ++more)
            text += more % longestWord == 0 ? QChar(u' ') : QChar(0x00e4);
        return text;
    }
};
