#include <app/AppDelegate.h>
#include <platform/UserDefaults.h>
#include <platform/ValueTransformer.h>
#include <support/Sandbox.h>

#include <QTest>

using namespace Qt::StringLiterals;

class AppDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<Sandbox>();
        ValueTransformer::setValueTransformer({}, u"LanguageCodeToName"_s);
    }

    void registersDefaultsAndTheTransformer()
    {
        qputenv("LC_ALL", "de_AT.UTF-8");
        const AppDelegate delegate;
        QCOMPARE(UserDefaults::standard().object(u"languageCode"_s), QVariant(u"de"_s));
        QCOMPARE(UserDefaults::standard().object(u"SUScheduledCheckInterval"_s), QVariant(u"86400"_s));
        const auto transformer = ValueTransformer::forName(u"LanguageCodeToName"_s);
        QVERIFY(transformer);
        QCOMPARE(transformer->transformedValue(u"fr"_s).toString(), u"Französisch"_s);
    }

    void registersNothingWithoutALanguage_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::newRow("C") << QByteArray("C");
        QTest::newRow("POSIX") << QByteArray("POSIX");
        QTest::newRow("C.UTF-8") << QByteArray("C.UTF-8");
    }
    void registersNothingWithoutALanguage()
    {
        QFETCH(QByteArray, locale);
        qputenv("LC_ALL", locale);
        const AppDelegate delegate;
        QVERIFY(!UserDefaults::standard().object(u"languageCode"_s).isValid());
        QVERIFY(!UserDefaults::standard().object(u"SUScheduledCheckInterval"_s).isValid());
        QVERIFY(!ValueTransformer::forName(u"LanguageCodeToName"_s));
    }

    void holdsNoRequestAtFirstAndTheLatestLater()
    {
        AppDelegate delegate;
        QVERIFY(!delegate.externalRequest());
        delegate.setExternalRequest(ExternalRequest{QUrl(u"file:///one"_s), {}});
        delegate.setExternalRequest(ExternalRequest{QUrl(u"file:///two"_s), {}});
        QCOMPARE(delegate.externalRequest()->url, QUrl(u"file:///two"_s));
        QCOMPARE(PendingRequest::shared(), &delegate);
    }

    void endsTheProgramWithItsLastWindow()
    {
        QVERIFY(AppDelegate().applicationShouldTerminateAfterLastWindowClosed());
    }

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

QTEST_GUILESS_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
