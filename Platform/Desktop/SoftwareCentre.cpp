// SPDX-License-Identifier: MIT
#include "SoftwareCentre.h"

#include "ProgramStart.h"

using namespace Qt::StringLiterals;

namespace
{

const QString appstreamType = u"x-scheme-handler/appstream"_s;

} // namespace

SoftwareCentre::SoftwareCentre(DesktopEntries entries)
    : m_entries(std::move(entries))
{
}

bool SoftwareCentre::isAvailable() const
{
    return m_entries.handler(appstreamType).has_value();
}

void SoftwareCentre::showComponent(const QString &componentId) const
{
    const auto centre = m_entries.handler(appstreamType);
    if (!centre)
        return;
    ProgramStart start;
    [[maybe_unused]] const auto failure = start.start(centre->command(u"appstream://"_s + componentId));
}
