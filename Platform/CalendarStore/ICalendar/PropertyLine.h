// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace ICalendar
{

// A content line taken apart (RFC 5545, section 3.1): a name, parameters and a value.
//
// Never fails: a line without a colon has a name and no value, a quote that is
// never closed counts as an ordinary character.
class PropertyLine
{
public:
    // Takes an unfolded line.
    explicit PropertyLine(QByteArray line);

    // Upper case, without the group that some programs put before it ("item1.SUMMARY").
    const QByteArray &name() const { return m_name; }
    bool hasValue() const { return m_valueBegin >= 0; }
    // As the line holds it. Empty when there is none.
    QByteArrayView value() const;
    // The first parameter of that name (upper case), without quotes and with RFC 6868 resolved.
    std::optional<QByteArray> parameter(QByteArrayView name) const;
    // The first parameter of that name as the line holds it, with its semicolon; empty when there is none.
    QByteArray parameterText(const QByteArray &name) const;
    // All parameters but those named (upper case), in the same way.
    QByteArray parametersWithout(const QByteArrayList &names) const;

private:
    struct Parameter {
        QByteArray name; // upper case
        QByteArray value; // as the line holds it
        QByteArray text; // all of it, as the line holds it
    };

    qsizetype findColon(bool honoursQuotes) const;
    void takeParameters(QByteArrayView text);

    QByteArray m_line;
    QByteArray m_name;
    std::vector<Parameter> m_parameters;
    qsizetype m_valueBegin = -1;
};

// The name of the property that an unfolded or folded line holds, as PropertyLine gives it.
QByteArray propertyName(QByteArrayView line);

} // namespace ICalendar
