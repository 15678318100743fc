#pragma once
#include <QByteArray>
#include <QList>
#include <utility>

/// Content packed as servers and archives do it. Small and plain, for tests.
QByteArray gzipped(const QByteArray &content);
/// A ZIP archive with stored entries: names and contents.
QByteArray zipped(const QList<std::pair<QByteArray, QByteArray>> &entries);
/// The same archive with what its first entry holds damaged: not what the sum beside it says, or no deflated
/// content at all. Or locked by a password.
QByteArray withWrongSum(QByteArray zip);
QByteArray withoutDeflation(QByteArray zip);
QByteArray locked(QByteArray zip);
/// One with one entry.
QByteArray zipped(const QByteArray &name, const QByteArray &content);
