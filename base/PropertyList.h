#pragma once
#include "Result.h"
#include <QVariantMap>

/// Reads a property list file (the XML form) that is a dictionary of texts, numbers and booleans. An Error
/// for a file that is missing, too large (8 MiB), anything else, or that declares entities. Any thread.
Result<QVariantMap> readPropertyList(const QString &path);

/// The same for bytes at hand.
Result<QVariantMap> parsePropertyList(const QByteArray &content);
