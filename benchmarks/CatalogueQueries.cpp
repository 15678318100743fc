#include "LargeCatalogue.h"
#include "Output.h"
#include "SqlRecorder.h"

#include <sources/catalogue/CatalogueDatabase.h>

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace
{
constexpr int Rows = 5'700'000;
constexpr int QuickRows = 200'000;
constexpr int QueryCount = 1000;
constexpr int Rounds = 5;
constexpr double Share = 0.99;

using Clock = std::chrono::steady_clock;
using Work = std::function<void(std::size_t)>;

/// What is measured for each question, and what must be ready before its clock starts.
struct Measured
{
    Work ready;
    Work work;
};

struct Question
{
    QString text;
    QString hash;
    quint64 size = 0;
    QString language;
    std::vector<RecordedQuery> statements; // what the program asks of SQLite for it
};

double millisecondsOf(const Measured &measured, std::size_t index)
{
    measured.ready(index);
    const auto begin = Clock::now();
    measured.work(index);
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double percentile(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[static_cast<std::size_t>(Share * static_cast<double>(times.size() - 1))];
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Each round asks everything of both, one after the other for each question; the medians of the rounds'
/// percentiles.
void measure(const char *name, std::size_t count, const Measured &program, const Measured &floor)
{
    std::vector<double> values;
    std::vector<double> floors;
    for (int round = 0; round < Rounds; ++round) {
        std::vector<double> ours;
        std::vector<double> bare;
        for (std::size_t index = 0; index < count; ++index) {
            // Who comes second finds everything in the caches, so they take turns.
            if ((index + static_cast<std::size_t>(round)) % 2 == 0) {
                ours.push_back(millisecondsOf(program, index));
                bare.push_back(millisecondsOf(floor, index));
            } else {
                bare.push_back(millisecondsOf(floor, index));
                ours.push_back(millisecondsOf(program, index));
            }
        }
        values.push_back(percentile(ours));
        floors.push_back(percentile(bare));
    }
    std::fprintf(measuredOutput(),
                 R"({"name": "%s", "value": %.5f, "floor": %.5f, "unit": "ms"})"
                 "\n",
                 name, median(values), median(floors));
}

std::vector<Question> questions(const LargeCatalogue &catalogue)
{
    std::mt19937 chance(20261121);
    std::vector<Question> all(QueryCount);
    for (Question &question : all) {
        const int film = std::uniform_int_distribution(0, catalogue.films() - 1)(chance);
        question.text = LargeCatalogue::threeWords(film, chance);
        question.hash = LargeCatalogue::hashOf(film);
        question.size = LargeCatalogue::sizeOf(film);
        question.language = LargeCatalogue::languageOf(chance);
    }
    return all;
}

using Ask = std::function<qsizetype(const CatalogueDatabase &, const Question &)>;

/// Has every question asked once, to know its statements and to fill the caches.
void learn(const QString &path, std::vector<Question> &all, const Ask &ask)
{
    SqlRecorder recorder;
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(path, CatalogueErrors());
    recorder.takeQueries();
    qsizetype found = 0;
    for (Question &question : all) {
        found += ask(*database, question);
        question.statements = recorder.takeQueries();
    }
    std::fprintf(stderr, "%d questions, %lld rows found\n", QueryCount, static_cast<long long>(found));
}

void measureQuestions(const char *name, const QString &path, std::vector<Question> all, const Ask &ask)
{
    learn(path, all, ask);
    const Result<CatalogueDatabase> database = CatalogueDatabase::open(path, CatalogueErrors());
    BareDatabase bare(path.toStdString());
    // The program prepares what it asks again and again only once.
    std::vector<sqlite3_stmt *> repeated;
    const Work prepareRepeated = [&](std::size_t index) {
        for (const RecordedQuery &query : all[index].statements) {
            if (query.isRepeated)
                repeated.push_back(bare.prepared(query.text));
        }
    };
    const Work readAll = [&](std::size_t index) {
        auto next = repeated.begin();
        for (const RecordedQuery &query : all[index].statements) {
            if (query.isRepeated)
                BareDatabase::read(*next++);
            else
                bare.read(query.text);
        }
        repeated.clear();
    };
    measure(name, all.size(), {[](std::size_t) {}, [&](std::size_t index) { ask(*database, all[index]); }},
            {prepareRepeated, readAll});
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const LargeCatalogue catalogue(application.arguments().contains(QStringLiteral("--quick")) ? QuickRows
                                                                                               : Rows);
    const std::vector<Question> all = questions(catalogue);
    measureQuestions(
        "catalogue_hash_query", catalogue.path(), all,
        [](const CatalogueDatabase &database, const Question &question) {
            return database.entriesForVideo(question.size, question.hash, question.language)->size();
        });
    measureQuestions("catalogue_text_query", catalogue.path(), all,
                     [](const CatalogueDatabase &database, const Question &question) {
                         return database.entriesForText(question.text, question.language)->size();
                     });
    return 0;
}
