// SPDX-License-Identifier: MIT
#include "EditOptions.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

using Action = EditOptions::Action;

const QStringList &fields()
{
    static const QStringList names { u"title"_s, u"location"_s, u"notes"_s, u"url"_s, u"start"_s, u"end"_s, u"allday"_s,
        u"due"_s, u"priority"_s, u"calendar"_s };
    return names;
}

std::optional<Action> actionNamed(const QString &word)
{
    const std::array<std::pair<QString, Action>, 4> actions { { { u"set"_s, Action::Set }, { u"tick"_s, Action::Tick },
        { u"untick"_s, Action::Untick }, { u"delete"_s, Action::Delete } } };
    for (const auto &[name, action] : actions) {
        if (name == word)
            return action;
    }
    return std::nullopt;
}

std::optional<Error> wrongValue(const EditOptions &options)
{
    const bool isMoment = options.field == u"start" || options.field == u"end" || options.field == u"due";
    if (isMoment && !options.value.isEmpty() && !EditOptions::momentOf(options.value))
        return Error { options.field + u" wants YYYY-MM-DDThh:mm, or YYYY-MM-DD."_s };
    if ((options.field == u"start" || options.field == u"end") && options.value.isEmpty())
        return Error { options.field + u" cannot be empty."_s };
    if (options.field == u"allday" && options.value != u"0" && options.value != u"1")
        return Error { u"allday wants 0 or 1."_s };
    if (options.field == u"calendar" && options.value.isEmpty())
        return Error { u"calendar wants a folder's name."_s };
    bool isNumber = options.value.isEmpty();
    const int priority = isNumber ? 0 : options.value.toInt(&isNumber);
    if (options.field == u"priority" && (!isNumber || priority < 0 || priority > 9))
        return Error { u"priority wants 0 to 9."_s };
    return std::nullopt;
}

// The words after the action belong to it, whatever they look like.
std::optional<Error> takeAction(EditOptions &options, const QStringList &words)
{
    const auto action = actionNamed(words.constFirst());
    if (!action)
        return Error { u"There is nothing called "_s + words.constFirst() + u" to do."_s };
    options.action = *action;
    if (*action != Action::Set)
        return words.size() == 1 ? std::nullopt
                                 : std::optional(Error { words.constFirst() + u" wants nothing more."_s });
    if (words.size() != 3)
        return Error { u"set wants a field and a value."_s };
    options.field = words.at(1);
    options.value = words.at(2);
    if (!fields().contains(options.field))
        return Error { u"The fields are "_s + fields().join(u", "_s) + u'.' };
    return wrongValue(options);
}

std::optional<Error> takeOption(EditOptions &options, const QString &name, const QString &value)
{
    if (name == u"--occurrence") {
        options.occurrence = EditOptions::momentOf(value);
        if (!options.occurrence)
            return Error { u"--occurrence wants YYYY-MM-DDThh:mm, or YYYY-MM-DD."_s };
        return std::nullopt;
    }
    if (name != u"--span")
        return Error { u"There is no option "_s + name + u'.' };
    if (value != u"this" && value != u"all")
        return Error { u"--span wants this or all."_s };
    options.span = value == u"this" ? CalSpanThisEvent : CalSpanAllEvents;
    return std::nullopt;
}

} // namespace

std::optional<EditOptions::Moment> EditOptions::momentOf(const QString &text)
{
    if (const QDate day = QDate::fromString(text, u"yyyy-MM-dd"_s); day.isValid())
        return Moment { day.startOfDay(), true };
    for (const QString &format : { u"yyyy-MM-dd'T'HH:mm"_s, u"yyyy-MM-dd'T'HH:mm:ss"_s }) {
        if (const QDateTime instant = QDateTime::fromString(text, format); instant.isValid())
            return Moment { instant, false };
    }
    return std::nullopt;
}

Result<EditOptions> editOptions(const QStringList &arguments)
{
    EditOptions options;
    QStringList places;
    for (qsizetype at = 0; at < arguments.size(); ++at) {
        const QString &word = arguments.at(at);
        if (word.startsWith(u"--")) {
            if (at + 1 == arguments.size())
                return Error { word + u" wants a value."_s };
            if (const auto error = takeOption(options, word, arguments.at(++at)))
                return *error;
        } else if (places.size() < 2) {
            places << word;
        } else {
            options.folder = places.at(0);
            options.uid = places.at(1);
            const auto error = takeAction(options, arguments.mid(at));
            return error ? Result<EditOptions>(*error) : Result<EditOptions>(options);
        }
    }
    return Error { u"Name a folder of calendars, an item's UID, and what to do."_s };
}
