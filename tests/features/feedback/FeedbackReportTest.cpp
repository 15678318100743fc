#include <features/feedback/FeedbackReport.h>
#include <tests/support/TestMain.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

class FeedbackReportTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingComesBack()
    {
        const FeedbackReport report{
            u"It \"works\" é\n😀"_s, {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}}, {u"x"_s, u"y"_s}};
        const auto read = FeedbackReport::fromJson(report.toJson());
        QVERIFY(read);
        QCOMPARE(read->text, report.text);
        QCOMPARE(read->parameters, report.parameters);
        QCOMPARE(read->log, report.log);
    }

    void nothingElseIsInIt()
    {
        const auto named = [](const FeedbackReport &report) {
            return QJsonDocument::fromJson(report.toJson()).object().keys();
        };
        QCOMPARE(named({u"t"_s, {}, {}}), (QStringList{u"parameters"_s, u"text"_s}));
        QCOMPARE(named({u"t"_s, {}, {u"l"_s}}), (QStringList{u"log"_s, u"parameters"_s, u"text"_s}));
    }

    void malformedReportsAreRejected_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("text");
        QTest::newRow("a list") << QByteArray(R"(["text"])");
        QTest::newRow("no text") << QByteArray(R"({"parameters":{}})");
        QTest::newRow("a number") << QByteArray(R"({"text":1})");
        QTest::newRow("cut") << QByteArray(R"({"text":"a")");
    }
    void malformedReportsAreRejected()
    {
        QFETCH(const QByteArray, json);
        QVERIFY(!FeedbackReport::fromJson(json));
    }

    void oddMembersAreHarmless()
    {
        const auto read = FeedbackReport::fromJson(R"({"text":"t","parameters":[1],"log":{"a":1}})");
        QVERIFY(read);
        QVERIFY(read->parameters.isEmpty());
        QVERIFY(read->log.isEmpty());
    }
};

PLOVENDIX_TEST(FeedbackReportTest)
#include "FeedbackReportTest.moc"
