#include "LargeCatalogue.h"

#include <sources/catalogue/CatalogueRows.h>
#include <sources/catalogue/CatalogueSchema.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr int RowsOfAFilm = 19;
constexpr int Vocabulary = 60'000;
constexpr std::array Frequent{"the", "of", "a", "and", "in", "to", "last", "night", "man", "love"};
constexpr std::array Syllables{"ba",  "re",  "mo",  "ti",  "lu",  "san", "ver", "kor", "len", "dra",
                               "shi", "pol", "nem", "gar", "wes", "fin", "hul", "jo",  "zen", "qui",
                               "tor", "ail", "ben", "cro", "dul", "eth", "fra", "gil", "har", "ist"};
constexpr std::array Languages{"eng", "spa", "por", "fre", "ger", "ita", "dut", "pol", "rus", "ara",
                               "chi", "jpn", "kor", "tur", "swe", "dan", "nor", "fin", "gre", "heb",
                               "cze", "hun", "rum", "bul", "hrv", "srp", "slv", "slo", "ukr", "vie"};

double share(std::mt19937 &chance)
{
    return std::uniform_real_distribution<double>(0, 1)(chance);
}

/// Few indices often, most of them rarely.
int skewed(std::mt19937 &chance, int count)
{
    const double at = share(chance);
    return std::min(count - 1, static_cast<int>(count * at * at * at));
}

QString invented(int number)
{
    QString word;
    for (int rest = number + 31; rest > 0; rest /= int(Syllables.size()))
        word += QLatin1StringView(Syllables.at(static_cast<std::size_t>(rest) % Syllables.size()));
    return word;
}

QString word(std::mt19937 &chance)
{
    if (share(chance) < 0.3)
        return QLatin1StringView(
            Frequent.at(static_cast<std::size_t>(skewed(chance, static_cast<int>(Frequent.size())))));
    return invented(skewed(chance, Vocabulary));
}

std::mt19937 chanceOf(int film)
{
    return std::mt19937(static_cast<quint32>(film) * 2654435761U + 7);
}

FilmRecord filmRecord(int film)
{
    FilmRecord record;
    record.titles = {LargeCatalogue::titleOf(film)};
    record.year = 1950 + film % 75;
    record.imdbNumber = film + 1;
    if (film % 3 == 0) {
        // Episodes of one series follow each other and share its title.
        record.season = 1 + film / 3 % 4;
        record.episode = 1 + film / 12 % 20;
    }
    return record;
}

SubtitleRecord subtitleRecord(const FilmRecord &film, int number, int row, std::mt19937 &chance)
{
    SubtitleRecord record;
    record.release =
        QString(film.titles.first()).replace(u' ', u'.') +
        u".%1.%2p.WEB-%3"_s.arg(*film.year).arg(row % 2 ? 1080 : 720).arg(invented(row % 900).toUpper());
    record.language = LargeCatalogue::languageOf(chance);
    record.format = row % 5 ? u"srt"_s : u"ass"_s;
    record.downloads = skewed(chance, 100'000);
    record.content = StoredContent::plain(QByteArray::number(number) + '/' + QByteArray::number(row));
    if (row == 0) {
        record.videoHash = LargeCatalogue::hashOf(number);
        record.videoSize = LargeCatalogue::sizeOf(number);
    }
    return record;
}
} // namespace

LargeCatalogue::LargeCatalogue(int rows)
    : m_path(QCoreApplication::applicationDirPath() + u"/catalogue-%1.sqlite"_s.arg(rows)),
      m_films(rows / RowsOfAFilm)
{
    if (!QFile::exists(m_path))
        make(rows);
}

QString LargeCatalogue::titleOf(int film)
{
    // Twenty episodes in four seasons of one series: what is told apart by season and episode alone.
    std::mt19937 chance = chanceOf(film % 3 == 0 ? film / 240 * 240 : film);
    QStringList words;
    const int count = 1 + static_cast<int>(share(chance) * 5);
    for (int i = 0; i < count; ++i)
        words += word(chance);
    return words.join(u' ');
}

QString LargeCatalogue::hashOf(int film)
{
    return QString::number(0x1000'0000'0000'0000ULL + static_cast<quint64>(film) * 0x9e3779b97f4aULL, 16);
}

quint64 LargeCatalogue::sizeOf(int film)
{
    return 700'000'000ULL + static_cast<quint64>(film) * 1024;
}

QString LargeCatalogue::languageOf(std::mt19937 &chance)
{
    return QLatin1StringView(
        Languages.at(static_cast<std::size_t>(skewed(chance, static_cast<int>(Languages.size())))));
}

QString LargeCatalogue::threeWords(int film, std::mt19937 &chance)
{
    QStringList words = titleOf(film).split(u' ');
    std::shuffle(words.begin(), words.end(), chance);
    words = words.mid(0, 3);
    while (words.size() < 3)
        words += word(chance);
    if (share(chance) < 0.1)
        words[0] = u"zz"_s + words[0];
    if (share(chance) < 0.2)
        words[2] = words[2].left(3);
    return words.join(u' ');
}

void LargeCatalogue::make(int rows) const
{
    std::fprintf(stderr, "making a catalogue of %d subtitles, once\n", rows);
    const QString draft = m_path + u".draft"_s;
    QFile::remove(draft);
    SQLite::Database database(draft.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    SQLite::Transaction transaction(database);
    CatalogueSchema::create(database);
    CatalogueRows catalogue(database);
    int left = rows;
    for (int film = 0; left > 0; ++film) {
        std::mt19937 chance = chanceOf(film + 1'000'000);
        const FilmRecord record = filmRecord(film);
        const qint64 id = catalogue.addFilm(record);
        for (int row = 0; row < RowsOfAFilm && left > 0; ++row, --left)
            catalogue.addSubtitle(id, subtitleRecord(record, film, row, chance));
    }
    database.exec("INSERT INTO title_words(title_words) VALUES('optimize')");
    transaction.commit();
    if (!QFile::rename(draft, m_path))
        qFatal("the catalogue could not be kept");
}
