// SPDX-License-Identifier: MIT
#include "WindowState.h"

#include "StateFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 largestFile = 64 * 1024; // bytes; a file beyond that is not ours
constexpr int largestCoordinate = 100'000; // pixels

std::optional<int> pixels(const QJsonValue &value, int smallest)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (!(number >= smallest && number <= largestCoordinate))
        return std::nullopt;
    return static_cast<int>(number);
}

std::optional<QRect> rectangle(const QJsonObject &object)
{
    const auto x = pixels(object[u"x"], -largestCoordinate);
    const auto y = pixels(object[u"y"], -largestCoordinate);
    const auto width = pixels(object[u"width"], 1);
    const auto height = pixels(object[u"height"], 1);
    if (!x || !y || !width || !height)
        return std::nullopt;
    return QRect(*x, *y, *width, *height);
}

QJsonObject object(const QRect &rectangle)
{
    return {
        { u"x"_s, rectangle.x() },
        { u"y"_s, rectangle.y() },
        { u"width"_s, rectangle.width() },
        { u"height"_s, rectangle.height() },
    };
}

constexpr auto upperPane = "upper"_L1;
constexpr auto lowerPane = "lower"_L1;

std::optional<WindowState::Pane> pane(const QJsonValue &value)
{
    if (value.toString() == upperPane)
        return WindowState::Pane::Upper;
    if (value.toString() == lowerPane)
        return WindowState::Pane::Lower;
    return std::nullopt;
}

} // namespace

WindowStateFile::WindowStateFile(QString path)
    : m_path(std::move(path))
{
}

QString WindowStateFile::defaultPath()
{
    return stateFolder() + u"/window.json"_s;
}

WindowState WindowStateFile::read() const
{
    QFile file(m_path);
    // A FIFO or a device under that name would block or never end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return {};
    const QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();

    WindowState state;
    state.frame = rectangle(content[u"frame"].toObject());
    state.dividerPosition = pixels(content[u"dividerPosition"], 0);
    state.collapsedPane = pane(content[u"collapsedPane"]);
    state.isDateBarVisible = content[u"isDateBarVisible"].toBool(true);
    return state;
}

Result<void> WindowStateFile::write(const WindowState &state) const
{
    QJsonObject content { { u"isDateBarVisible"_s, state.isDateBarVisible } };
    if (state.frame)
        content.insert(u"frame"_s, object(*state.frame));
    if (state.dividerPosition)
        content.insert(u"dividerPosition"_s, *state.dividerPosition);
    if (state.collapsedPane)
        content.insert(u"collapsedPane"_s, *state.collapsedPane == WindowState::Pane::Upper ? upperPane : lowerPane);

    const QString folder = QFileInfo(m_path).path();
    if (!QDir().mkpath(folder))
        return Error { QCoreApplication::translate("Vantle", "The folder “%1” cannot be made.").arg(folder) };
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return Error { file.errorString() };
    file.write(QJsonDocument(content).toJson());
    if (!file.commit())
        return Error { file.errorString() };
    return {};
}
