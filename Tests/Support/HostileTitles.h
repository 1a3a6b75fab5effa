// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

// What a person who means harm, or another program that is broken, writes into a calendar.
inline QStringList hostileTitles()
{
    using namespace Qt::StringLiterals;
    constexpr int megabyte = 1000000;
    return {
        u"<b>Buy</b> <img src='file:///etc/hostname'> <a href='file:///etc/passwd'>milk</a>"_s,
        u"<img src=\"http://127.0.0.1:9/x.png\"><script>alert(1)</script>"_s,
        u"<html><body><table border=9><tr><td>cell</td></tr></table></body></html>"_s,
        u"&lt;b&gt; &amp; &#65; R&D %1 %2 %n"_s,
        u"first\nsecond\r\nthird\tfourth\u2028fifth\u2029sixth"_s,
        u"\u202Egnp.exe\u202C \u200Fright\u200E \u2066isolate\u2069 \u061C"_s,
        u"\u05E9\u05DC\u05D5\u05DD hello \u0645\u0631\u062D\u0628\u0627"_s,
        QString(megabyte, u'W'),
        u"<b>"_s.repeated(megabyte / 3),
        u"word "_s.repeated(megabyte / 5),
        u"\u0301"_s.repeated(megabyte / 10),
        QString(100000, u'\n'),
    };
}
