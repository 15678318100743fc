#include <app/AppDelegate.h>
#include <base/Bundle.h>
#include <base/UserDefaults.h>
#include <base/ValueTransformer.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/system/URLEventCentre.h>

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
        const QVariant interval = UserDefaults::standard().object(u"SUScheduledCheckInterval"_s);
        QCOMPARE(interval.metaType(),
                 QMetaType::fromType<QString>()); // a number would compare equal to its text
        QCOMPARE(interval.toString(), u"86400"_s);
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

    void destroyedDelegateIsNotAsked()
    {
        {
            const AppDelegate delegate;
            QCOMPARE(AppDelegate::shared(), &delegate);
            QVERIFY(!delegate.externalRequest);
        }
        QVERIFY(!AppDelegate::shared());
    }

    void obtainsTheUpdaterWhenLaunchHasFinished()
    {
        int obtained = 0;
        AppDelegate delegate([&obtained] { ++obtained; });
        delegate.applicationWillFinishLaunching();
        QCOMPARE(obtained, 0);
        delegate.applicationDidFinishLaunching();
        QCOMPARE(obtained, 1);
    }

    void describesTheProgramInFeedbackReports()
    {
        const QMap<QString, QString> parameters = AppDelegate().customParametersForFeedbackReport();
        QCOMPARE(parameters.keys(), (QStringList{u"application"_s, u"identifier"_s, u"version"_s}));
        QCOMPARE(parameters[u"identifier"_s], u"com.quorvane.Plovendix"_s);
        QCOMPARE(parameters[u"application"_s], u"Plovendix"_s);
        QCOMPARE(parameters[u"version"_s], u"1.0"_s);
    }

    void missingInformationIsFatal_data()
    {
        QTest::addColumn<QString>("missing");
        for (const QString &key :
             {u"CFBundleIdentifier"_s, u"CFBundleName"_s, u"CFBundleShortVersionString"_s})
            QTest::newRow(qUtf8Printable(key)) << key;
    }
    void missingInformationIsFatal()
    {
        QFETCH(QString, missing);
        QString list = u"<plist version=\"1.0\"><dict>"_s;
        for (const QString &key :
             {u"CFBundleIdentifier"_s, u"CFBundleName"_s, u"CFBundleShortVersionString"_s})
            list += u"<key>%1</key><string>x</string>"_s.arg(key == missing ? u"Other"_s : key);
        m_sandbox->writeFile(u"bundle/Info.plist"_s, (list + u"</dict></plist>"_s).toUtf8());
        Bundle::setMainFolder(m_sandbox->path(u"bundle"_s));
        const AppDelegate delegate;
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(delegate.customParametersForFeedbackReport(), FatalFaultCaught);
    }

    void urlEventsKeepTheirOrder()
    {
        URLEventCentre centre;
        for (int i = 0; i < 20; ++i)
            centre.send({QString::number(i)});
        QStringList received;
        centre.setEventHandler([&received](const GetURLEvent &event) { received += *event.directParameter; });
        QCOMPARE(received.size(), 16);
        QCOMPARE(received.first(), u"4"_s);
        QCOMPARE(received.last(), u"19"_s);
        centre.send({u"now"_s});
        QCOMPARE(received.last(), u"now"_s);
        centre.setEventHandler({});
        centre.send({u"later"_s});
        QCOMPARE(received.last(), u"now"_s);
    }

    void endsTheProgramWithItsLastWindow()
    {
        QVERIFY(AppDelegate().applicationShouldTerminateAfterLastWindowClosed());
    }

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

PLOVENDIX_TEST(AppDelegateTest)
#include "AppDelegateTest.moc"
