// SPDX-License-Identifier: MIT
#include "QUrl+VTHelper.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isAsciiLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isSchemeCharacter(QChar character)
{
    return isAsciiLetter(character) || (character >= u'0' && character <= u'9') || character == u'+'
        || character == u'-' || character == u'.';
}

// RFC 3986, section 3.1. QUrl refuses "192.168.1.1:8080" as a whole, so it cannot be asked.
bool hasScheme(const QString &text)
{
    const qsizetype colon = text.indexOf(u':');
    return colon > 0 && isAsciiLetter(text.front())
        && std::all_of(text.cbegin(), text.cbegin() + colon, isSchemeCharacter);
}

} // namespace

std::optional<QUrl> URLWithDefaultHTTPScheme(const std::optional<QString> &text)
{
    if (!text || text->isEmpty())
        return std::nullopt;

    const QUrl url(hasScheme(*text) ? *text : u"http://"_s + *text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}
