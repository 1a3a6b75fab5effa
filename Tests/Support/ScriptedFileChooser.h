// SPDX-License-Identifier: MIT
#pragma once

#include <FileChooser.h>

// Answers as a test tells it; until then the person gives up.
class ScriptedFileChooser final : public FileChooser
{
public:
    std::optional<QUrl> chooseFile(QWidget * /*over*/) override
    {
        ++questions;
        return answer;
    }

    std::optional<QUrl> chooseNewFile(QWidget * /*over*/, const QString & /*suggestedName*/) override
    {
        ++questions;
        return answer;
    }

    std::optional<QUrl> answer;
    int questions = 0;
};
