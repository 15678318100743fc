#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QUrl>
#include <QUrlQuery>
#include <functional>
#include <utility>

/// A request as it came over the wire.
struct ReceivedRequest
{
    QByteArray method;
    QByteArray target;                     // path and query, raw
    QHash<QByteArray, QByteArray> headers; // by lower-case name
    QByteArray body;
    quint16 port = 0;
    quint16 peerPort = 0; // tells connections apart

    QByteArray header(const QByteArray &name) const { return headers.value(name.toLower()); }
    QByteArray path() const
    {
        return target.left(target.indexOf('?') < 0 ? target.size() : target.indexOf('?'));
    }
    QByteArray query() const { return target.mid(path().size() + 1); }
};

/// How an answer travels.
enum class Delivery
{
    Whole,
    Chunked,
    Dripped,             // a byte at a time
    StalledAfterHeaders, // and nothing more
    LengthTooLong,       // Content-Length promises more than comes before the close
    ChunkedWithoutEnd,
    ClosedBefore, // the connection closes instead of an answer
    ClosedAfter,  // and no word that it will
    Silent,       // no answer, the connection stays
};

/// What the server says.
struct ServedAnswer
{
    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers = {};
    QByteArray body = {};
    Delivery delivery = Delivery::Whole;

    void setHeader(const QByteArray &name, const QByteArray &value)
    {
        for (auto &[known, content] : headers) {
            if (known.compare(name, Qt::CaseInsensitive) == 0) {
                content = value;
                return;
            }
        }
        headers.emplaceBack(name, value);
    }
};

/// The time a stand-in goes by: the machine's, or a test's.
struct StandInTime
{
    std::function<qint64()> milliseconds;
    std::function<QDateTime()> date;
};
