#pragma once
#include "Behaviours.h"
#include "Exchange.h"

#include <QSet>

/// The host that hands out the files behind download links.
class SubtitleLinks final
{
public:
    explicit SubtitleLinks(const Behaviours &behaviours) : m_behaviours(behaviours) {}

    ServedAnswer answer(const ReceivedRequest &request);

    /// The path of a new link to that file.
    QByteArray pathFor(qint64 fileId);
    /// What is in it.
    static QByteArray content(qint64 fileId);

private:
    ServedAnswer file(qint64 fileId) const;

    const Behaviours &m_behaviours;
    int m_links = 0;
    QSet<QByteArray> m_used;
};
