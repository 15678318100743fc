#pragma once
#include "Behaviours.h"
#include "Exchange.h"

/// The film database: a film (tt9000002), a show (tt9000001), an episode (tt9000011), a person (nm9000003), a
/// film without a poster (tt9000004), nothing for every other id.
class FilmStandIn final
{
public:
    static inline const QByteArray Key = QByteArrayLiteral("0123456789abcdef0123456789abcdef");
    static inline const QByteArray Token =
        QByteArrayLiteral("eyJhbGciOiJIUzI1NiJ9.eyJzdGFuZCI6ImluIn0.abcdef");

    explicit FilmStandIn(Behaviours &behaviours) : m_behaviours(behaviours) {}

    void setImageBase(const QUrl &base) { m_imageBase = base; }
    ServedAnswer answer(const ReceivedRequest &request);
    ServedAnswer image(const ReceivedRequest &request);

    /// The picture at that path in its size "w154" and so on, as it is sent.
    static QByteArray poster(int width);

private:
    std::optional<ServedAnswer> gate(const ReceivedRequest &request);
    ServedAnswer find(const ReceivedRequest &request) const;
    ServedAnswer show(const ReceivedRequest &request) const;
    ServedAnswer configuration() const;

    Behaviours &m_behaviours;
    QUrl m_imageBase;
};
