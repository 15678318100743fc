#pragma once
#include <QByteArray>

/// The library that parses property lists recurses as deep as a file says and expands shared objects as often
/// as they are named. These checks stand before it, so that a hostile file ends as "no property list". Any
/// thread.

bool isBinaryPropertyList(const QByteArray &content);

/// Whether a binary list nests at most MaxPropertyListDepth deep, has at most MaxPropertyListValues objects,
/// expands to at most MaxPropertyListExpandedBytes, and is sound as far as the library relies on it.
bool isHarmlessBinaryPropertyList(const QByteArray &content);

/// The elements of an XML list alone, written anew: no document type, comments or instructions. Empty when it
/// is not well-formed, nests too deep, has too many values, declares entities, or its root is not a plist
/// element.
QByteArray plainXmlPropertyList(const QByteArray &content);

constexpr int MaxPropertyListDepth = 64;
constexpr int MaxPropertyListValues = 1'000'000;
constexpr long long MaxPropertyListExpandedBytes = 64LL * 1024 * 1024;
