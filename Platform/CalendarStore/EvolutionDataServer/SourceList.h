// SPDX-License-Identifier: MIT
#pragma once

#include "GLibTypes.h"
#include "SourceDescription.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

namespace Service
{

// The sources of the service's registry that are enabled, kept current. Asks for the registry without waiting, and
// again and again until it answers.
class SourceList final : public QObject
{
    Q_OBJECT

public:
    explicit SourceList(QObject *parent = nullptr);
    ~SourceList() override;

    void open();
    // Whether the registry has answered, or was asked in vain for so long that nobody waits any more.
    bool isKnown() const { return m_isKnown; }
    // While it has not been reached.
    bool isSilent() const { return m_isSilent; }

    const std::vector<SourceDescription> &sources() const { return m_sources; }
    // Null for one that is not there any more.
    Owned<ESource> source(const QString &uid) const;

    static constexpr std::chrono::seconds patience { 10 };

Q_SIGNALS:
    void changed();

private:
    void take(GAsyncResult *answer);
    void listen();
    void read();
    void readSoon() { m_soon.start(); }
    SourceDescription describe(ESource *source, const char *extensionName) const;

    Owned<GCancellable> m_cancellable;
    Owned<ESourceRegistry> m_registry;
    std::vector<SourceDescription> m_sources;
    QTimer m_soon; // one look for a burst of changes
    QTimer m_again;
    QTimer m_impatience;
    bool m_isKnown = false;
    bool m_isSilent = false;
};

} // namespace Service
