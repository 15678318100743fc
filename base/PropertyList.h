#pragma once
#include "Result.h"
#include <QVariant>

constexpr int MaxPropertyListDepth = 64;

/// Reads a property list file (the XML form) into maps, lists, texts, numbers, booleans, dates and byte
/// arrays. An Error for a file that is missing, too large (8 MiB), no property list, that declares entities
/// or nests deeper than MaxPropertyListDepth. Any thread.
Result<QVariant> readPropertyList(const QString &path);

/// The same for bytes at hand.
Result<QVariant> parsePropertyList(const QByteArray &content);
