// SPDX-License-Identifier: MIT
#include "AssertionHandler.h"

using namespace Qt::StringLiterals;

namespace
{

class ThrowingHandler final : public AssertionHandler
{
public:
    void handleFailure(const QString &message, const QString &sourceName, int line) override
    {
        throw AssertionFailure(message, sourceName, line);
    }
};

ThrowingHandler throwingHandler;
AssertionHandler *currentHandler = nullptr;

} // namespace

AssertionFailure::AssertionFailure(const QString &message, const QString &sourceName, int line)
    : m_message(message)
    , m_sourceName(sourceName)
    , m_line(line)
    , m_what(u"%1 (%2:%3)"_s.arg(message, sourceName, QString::number(line)).toUtf8())
{
}

AssertionHandler &AssertionHandler::current()
{
    return currentHandler ? *currentHandler : throwingHandler;
}

void AssertionHandler::setCurrent(AssertionHandler *handler)
{
    currentHandler = handler;
}

ScopedAssertionHandler::ScopedAssertionHandler(AssertionHandler &handler)
    : m_previous(currentHandler)
{
    AssertionHandler::setCurrent(&handler);
}

ScopedAssertionHandler::~ScopedAssertionHandler()
{
    AssertionHandler::setCurrent(m_previous);
}
