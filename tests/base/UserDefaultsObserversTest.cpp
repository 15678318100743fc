#include "Witness.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class UserDefaultsObserversTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_path = m_sandbox.path(u"defaults-%1/Plovendix.conf"_s.arg(++m_number)); }

    void setterNotifiesObserversOfTheKeyAtOnce()
    {
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        defaults.setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(witness.seen(), QVariantList{u"de"_s});
        defaults.setObject(u"LanguageCode"_s, u"it"_s); // another key
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(witness.seen(), (QVariantList{u"de"_s, u"fr"_s}));
    }

    void equalValueDoesNotNotify()
    {
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"SUScheduledCheckInterval"_s, u"86400"_s}});
        const Witness witness(defaults, u"SUScheduledCheckInterval"_s);
        defaults.setObject(u"SUScheduledCheckInterval"_s, 86400);
        defaults.setObject(u"SUScheduledCheckInterval"_s, 86400);
        defaults.synchronize();
        QVERIFY(witness.seen().isEmpty());
        // Chosen by the person now, so that another registered value does not show.
        defaults.registerDefaults({{u"SUScheduledCheckInterval"_s, u"3600"_s}});
        QCOMPARE(defaults.integer(u"SUScheduledCheckInterval"_s), 86400);
        QVERIFY(witness.seen().isEmpty());
    }

    void removalShowsTheRegisteredValue()
    {
        UserDefaults defaults(m_path);
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        defaults.setObject(u"languageCode"_s, u"fr"_s);
        const Witness witness(defaults, u"languageCode"_s);
        defaults.removeObject(u"languageCode"_s);
        defaults.removeObject(u"languageCode"_s);
        QCOMPARE(witness.seen(), QVariantList{u"de"_s});
    }

    void registrationNotifies()
    {
        UserDefaults defaults(m_path);
        const Witness witness(defaults, u"languageCode"_s);
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        defaults.registerDefaults({{u"languageCode"_s, u"de"_s}});
        QCOMPARE(witness.seen(), QVariantList{u"de"_s});
    }

    void observerMayEndObservations()
    {
        UserDefaults defaults(m_path);
        UserDefaults::Observation first;
        UserDefaults::Observation second;
        int calls = 0;
        first = defaults.observe(u"key"_s, [&](const QVariant &) {
            ++calls;
            first.invalidate();
            second.invalidate();
        });
        second = defaults.observe(u"key"_s, [&](const QVariant &) { calls += 10; });
        defaults.setObject(u"key"_s, 1);
        defaults.setObject(u"key"_s, 2);
        QCOMPARE(calls, 1);
    }

    void observerMaySetValues()
    {
        UserDefaults defaults(m_path);
        const auto capping = defaults.observe(u"key"_s, [&](const QVariant &value) {
            if (value.toInt() > 10)
                defaults.setObject(u"key"_s, 10);
            defaults.setObject(u"other"_s, value);
        });
        const Witness witness(defaults, u"key"_s);
        const Witness other(defaults, u"other"_s);
        defaults.setObject(u"key"_s, 50);
        QCOMPARE(defaults.integer(u"key"_s), 10);
        QCOMPARE(witness.seen(), QVariantList{10LL});
        QCOMPARE(other.seen(), (QVariantList{10LL, 50LL}));
    }

    void observerThatSetsTheValueBackHidesItFromTheRest()
    {
        UserDefaults defaults(m_path);
        defaults.setObject(u"key"_s, 1);
        const auto stubborn =
            defaults.observe(u"key"_s, [&](const QVariant &) { defaults.setObject(u"key"_s, 1); });
        const Witness witness(defaults, u"key"_s);
        defaults.setObject(u"key"_s, 2);
        QCOMPARE(defaults.integer(u"key"_s), 1);
        QVERIFY(witness.seen().isEmpty());
    }

    void observationMayOutliveTheDefaults()
    {
        int calls = 0;
        UserDefaults::Observation observation;
        {
            UserDefaults defaults(m_path);
            observation = defaults.observe(u"key"_s, [&](const QVariant &) { ++calls; });
            defaults.setObject(u"key"_s, 1);
        }
        observation.invalidate();
        observation.invalidate();
        QCOMPARE(calls, 1);
    }

    void observationReplacedByAnotherEnds()
    {
        UserDefaults defaults(m_path);
        int oldCalls = 0;
        int newCalls = 0;
        auto observation = defaults.observe(u"key"_s, [&](const QVariant &) { ++oldCalls; });
        observation = defaults.observe(u"key"_s, [&](const QVariant &) { ++newCalls; });
        defaults.setObject(u"key"_s, 1);
        QCOMPARE(oldCalls, 0);
        QCOMPARE(newCalls, 1);
    }

    void observerMayReplaceTheStandardFile()
    {
        UserDefaults::setStandardFile(m_path);
        UserDefaults &standard = UserDefaults::standard();
        standard.setObject(u"other"_s, 5);
        int calls = 0;
        const auto observation = standard.observe(u"key"_s, [&](const QVariant &) {
            ++calls;
            UserDefaults::setStandardFile(m_path + u".other"_s);
        });
        const Witness forgotten(standard, u"other"_s);
        standard.setObject(u"key"_s, 1);
        QCOMPARE(calls, 1);
        QVERIFY(!standard.object(u"key"_s).isValid());
        QVERIFY(forgotten.seen().isEmpty());
    }

private:
    QString m_path;
    Sandbox m_sandbox;
    int m_number = 0;
};

PLOVENDIX_TEST(UserDefaultsObserversTest)
#include "UserDefaultsObserversTest.moc"
