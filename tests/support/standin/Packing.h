#pragma once
#include <QByteArray>
#include <QList>
#include <utility>

/// Content packed as servers and archives do it. Small and plain, for tests.
QByteArray gzipped(const QByteArray &content);
/// A ZIP archive with stored entries: names and contents.
QByteArray zipped(const QList<std::pair<QByteArray, QByteArray>> &entries);
/// One with one entry.
QByteArray zipped(const QByteArray &name, const QByteArray &content);
