#include <base/Result.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class ResultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueOrError()
    {
        QCOMPARE(*Result<int>(7), 7);
        const Result<int> result(base::Error{u"Domain"_s, 5, u"It did not work."_s});
        QVERIFY(!result);
        QCOMPARE(result.error().domain, u"Domain"_s);
        QCOMPARE(result.error().code, 5);
        QCOMPARE(result.error().localizedDescription, u"It did not work."_s);
        QVERIFY_EXCEPTION_THROWN(result.value(), std::bad_variant_access);
    }

    void valueThatCannotBeCopiedIsMovedOut()
    {
        Result<std::unique_ptr<int>> result(std::make_unique<int>(3));
        const std::unique_ptr<int> taken = std::move(result).value();
        QCOMPARE(*taken, 3);
    }

    void successWithoutAValue()
    {
        const Result<void> worked;
        QVERIFY(worked);
        QVERIFY_EXCEPTION_THROWN(worked.error(), std::bad_variant_access);
        const Result<void> failed(base::Error{u"Domain"_s, 1, u"No."_s});
        QVERIFY(!failed);
        QCOMPARE(failed.error().code, 1);
    }
};

PLOVENDIX_PLAIN_TEST(ResultTest)
#include "ResultTest.moc"
