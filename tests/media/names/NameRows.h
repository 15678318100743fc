#pragma once
#include <media/names/FileNameParser.h>

#include <QTest>

#include <span>

/// Tables of video names and what they say, for tests whose data rows they are.
namespace NameRows
{
inline constexpr int None = -1;

struct Row
{
    const char *name;
    const char *title;
    int year = None;
    int season = None;
    int episode = None;
};

inline void add(std::span<const Row> rows)
{
    for (const Row &row : rows)
        QTest::newRow(row.name) << &row;
}

inline QByteArray text(const std::optional<int> &number)
{
    return number ? QByteArray::number(*number) : QByteArray("none");
}

inline QByteArray text(int number)
{
    return number == None ? QByteArray("none") : QByteArray::number(number);
}

inline void check(const Row &row)
{
    const VideoFileComponents said = parseVideoName(QString::fromUtf8(row.name));
    QCOMPARE(said.title, QString::fromUtf8(row.title));
    QCOMPARE(text(said.year), text(row.year));
    QCOMPARE(text(said.season), text(row.season));
    QCOMPARE(text(said.episode), text(row.episode));
}
} // namespace NameRows

Q_DECLARE_METATYPE(const NameRows::Row *)
