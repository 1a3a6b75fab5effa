// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// The URL that a person means by a text: "http://" is put before one that has no scheme, and nothing
// else is changed. Nothing for no text, an empty one, and one that is no URL.
std::optional<QUrl> URLWithDefaultHTTPScheme(const std::optional<QString> &text);
