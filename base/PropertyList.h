#pragma once
#include "Result.h"
#include <QVariant>

/// Reads a property list file (XML or binary) into maps, lists, texts, numbers, booleans, dates and byte
/// arrays. An Error for a file that is missing, too large (8 MiB) or no property list. Any thread.
Result<QVariant> readPropertyList(const QString &path);

/// The same for bytes at hand.
Result<QVariant> parsePropertyList(const QByteArray &content);
