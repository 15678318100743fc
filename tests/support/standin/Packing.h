#pragma once
#include <QByteArray>

/// Content packed as servers and archives do it. Small and plain, for tests.
QByteArray gzipped(const QByteArray &content);
/// A ZIP archive with one stored entry.
QByteArray zipped(const QByteArray &name, const QByteArray &content);
