#include "SubtitleRecords.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int DefaultCount = 3;
constexpr int RecordsOfOneName = 12'000;

const QStringList Releases = {u"Paper.Lighthouse.2019.720p.BluRay.x264-XYZ"_s,
                              u"Paper.Lighthouse.2019.1080p.WEB-ABC"_s, u"Paper Lighthouse (2019) DVDRip"_s,
                              u"Paper.Lighthouse.2019.2160p.UHD-QQQ"_s};

/// "pt-BR" for "pt-br", as the service writes it.
QString spelled(const QString &language)
{
    const qsizetype dash = language.indexOf(u'-');
    return dash < 0 ? language : language.left(dash) + language.mid(dash).toUpper();
}

QJsonObject feature(int index, const QUrlQuery &query)
{
    QJsonObject details{{u"feature_id"_s, 770001 + index},
                        {u"feature_type"_s, u"Movie"_s},
                        {u"year"_s, 2019},
                        {u"title"_s, u"Paper Lighthouse"_s},
                        {u"movie_name"_s, u"2019 - Paper Lighthouse"_s},
                        {u"imdb_id"_s, 9000002},
                        {u"tmdb_id"_s, 1800002}};
    if (!query.hasQueryItem(u"season_number"_s))
        return details;
    details[u"feature_type"_s] = u"Episode"_s;
    details[u"title"_s] = u"The Keeper"_s;
    details[u"season_number"_s] = query.queryItemValue(u"season_number"_s).toInt();
    details[u"episode_number"_s] = query.queryItemValue(u"episode_number"_s).toInt();
    details[u"parent_imdb_id"_s] = 9000001;
    details[u"parent_title"_s] = u"Paper Lighthouse"_s;
    return details;
}

QJsonObject record(int index, const QUrlQuery &query)
{
    const QString languages = query.queryItemValue(u"languages"_s, QUrl::FullyDecoded);
    const QString release = Releases[index % Releases.size()];
    QJsonObject attributes{
        {u"subtitle_id"_s, QString::number(9100001 + index)},
        {u"language"_s, spelled(languages.isEmpty() ? u"en"_s : languages.section(u',', 0, 0))},
        {u"download_count"_s, 100 + (index * 37) % 1000},
        {u"hearing_impaired"_s, index % 7 == 6},
        {u"fps"_s, index % 2 == 0 ? 23.976 : 0.0},
        {u"ratings"_s, 8.5},
        {u"from_trusted"_s, index % 5 == 4},
        {u"foreign_parts_only"_s, false},
        {u"upload_date"_s, u"2020-11-02T18:04:09Z"_s},
        {u"ai_translated"_s, false},
        {u"machine_translated"_s, false},
        {u"nb_cd"_s, 1},
        {u"release"_s, release},
        {u"comments"_s, QString()},
        {u"uploader"_s, QJsonObject{{u"uploader_id"_s, QJsonValue::Null}, {u"name"_s, u"Anonymous"_s}}},
        {u"feature_details"_s, feature(index, query)},
        {u"files"_s, QJsonArray{QJsonObject{{u"file_id"_s, SubtitleRecords::FirstFileId + index},
                                            {u"cd_number"_s, 1},
                                            {u"file_name"_s, release}}}}};
    if (query.hasQueryItem(u"moviehash"_s))
        attributes[u"moviehash_match"_s] = index == 0;
    return {{u"id"_s, QString::number(9100001 + index)},
            {u"type"_s, u"subtitle"_s},
            {u"attributes"_s, attributes}};
}

QJsonObject changed(QJsonObject record, const QJsonObject &attributes)
{
    QJsonObject all = record[u"attributes"_s].toObject();
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        all[it.key()] = it.value();
    record[u"attributes"_s] = all;
    return record;
}

QJsonObject named(QJsonObject record, const QString &fileName)
{
    QJsonArray files = record[u"attributes"_s].toObject()[u"files"_s].toArray();
    QJsonObject file = files[0].toObject();
    file[u"file_name"_s] = fileName;
    files[0] = file;
    return changed(record, {{u"files"_s, files}});
}

QJsonArray nineFiles(int index)
{
    QJsonArray files;
    for (int cd = 1; cd <= 9; ++cd)
        files += QJsonObject{{u"file_id"_s, 9300000 + 10 * index + cd},
                             {u"cd_number"_s, cd},
                             {u"file_name"_s, u"Paper.Lighthouse.CD%1"_s.arg(cd)}};
    return files;
}

/// Everything that was ever seen to be odd, one oddity a record.
QJsonArray oddRecords(const QUrlQuery &query)
{
    QJsonArray records;
    int index = 0;
    for (const QString &key :
         {u"comments"_s, u"from_trusted"_s, u"uploader"_s, u"legacy_subtitle_id"_s, u"release"_s,
          u"download_count"_s, u"fps"_s, u"feature_details"_s, u"hearing_impaired"_s})
        records += changed(record(index++, query), {{key, QJsonValue::Null}});
    QJsonObject details = feature(0, query);
    for (const QString &key : {u"tmdb_id"_s, u"imdb_id"_s, u"year"_s, u"title"_s})
        details[key] = QJsonValue::Null;
    records += changed(record(index++, query), {{u"feature_details"_s, details}});
    records += changed(record(index++, query), {{u"files"_s, QJsonArray()}});
    records += changed(record(index++, query), {{u"files"_s, nineFiles(0)}, {u"nb_cd"_s, 9}});
    records += changed(record(index, query),
                       {{u"files"_s, QJsonArray{QJsonObject{{u"file_id"_s, QString::number(9200001 + index)},
                                                            {u"file_name"_s, u"As.Text"_s}}}},
                        {u"download_count"_s, u"1234"_s}});
    ++index;
    for (const QString &name : {u"../../etc/Pass/wd"_s, u".."_s, u"Two\nLines"_s,
                                u"abc"_s + QChar(0x202E) + u"txt.exe"_s, QString(300, u'n'), QString()})
        records += named(record(index++, query), name);
    return records;
}

/// Short records, so that a page of them stays below what a client reads.
QJsonArray recordsOfOneName()
{
    QJsonArray records;
    for (int index = 0; index < RecordsOfOneName; ++index) {
        const QJsonObject file{{u"file_id"_s, SubtitleRecords::FirstFileId + index},
                               {u"file_name"_s, Releases[0]}};
        const QJsonObject attributes{
            {u"language"_s, u"en"_s}, {u"release"_s, Releases[0]}, {u"files"_s, QJsonArray{file}}};
        records += QJsonObject{{u"type"_s, u"subtitle"_s}, {u"attributes"_s, attributes}};
    }
    return records;
}
} // namespace

int SubtitleRecords::count(const Behaviours &behaviours)
{
    for (const auto &[name, number] :
         {std::pair("hits-0"_L1, 0), std::pair("hits-1"_L1, 1), std::pair("hits-50"_L1, 50),
          std::pair("hits-51"_L1, 51), std::pair("hits-1502"_L1, 1502)}) {
        if (behaviours.has(name))
            return number;
    }
    if (behaviours.has("odd-records"_L1))
        return static_cast<int>(oddRecords({}).size());
    return DefaultCount;
}

QJsonArray SubtitleRecords::page(const Behaviours &behaviours, const QUrlQuery &query, int first, int number)
{
    if (behaviours.has("odd-records"_L1))
        return oddRecords(query);
    if (behaviours.has("one-name"_L1))
        return recordsOfOneName();
    QJsonArray records;
    for (int index = first; index < std::min(first + number, count(behaviours)); ++index) {
        QJsonObject one = record(index, query);
        if (behaviours.has("mixed-matches"_L1))
            one = changed(one, {{u"moviehash_match"_s, index % 2 == 1}});
        records += behaviours.has("unreadable-records"_L1) ? QJsonValue(index) : QJsonValue(one);
    }
    if (behaviours.has("one-bad-record"_L1)) {
        records.prepend(42);
        records.insert(2, u"nonsense"_s);
        records.append(QJsonObject{{u"attributes"_s, QJsonArray()}});
    }
    return records;
}
