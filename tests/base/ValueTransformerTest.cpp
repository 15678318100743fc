#include <base/ValueTransformer.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class Prefixing final : public ValueTransformer
{
public:
    explicit Prefixing(const QString &prefix) : m_prefix(prefix) {}
    QVariant transformedValue(const QVariant &value) const override { return m_prefix + value.toString(); }

private:
    QString m_prefix;
};
} // namespace

class ValueTransformerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registeredTransformerIsFoundByName()
    {
        ValueTransformer::setValueTransformer(std::make_shared<Prefixing>(u"a-"_s), u"A"_s);
        const auto found = ValueTransformer::forName(u"A"_s);
        QVERIFY(found);
        QCOMPARE(found->transformedValue(u"x"_s), QVariant(u"a-x"_s));
        QVERIFY(!ValueTransformer::forName(u"a"_s));
    }

    void emptyPointerForgetsTheName()
    {
        ValueTransformer::setValueTransformer(std::make_shared<Prefixing>(u""_s), u"C"_s);
        QVERIFY(ValueTransformer::forName(u"C"_s));
        ValueTransformer::setValueTransformer({}, u"C"_s);
        QVERIFY(!ValueTransformer::forName(u"C"_s));
    }

    void oneWayIsTheDefault()
    {
        const Prefixing transformer(u"p"_s);
        QVERIFY(!transformer.allowsReverseTransformation());
        QVERIFY(!transformer.reverseTransformedValue(u"px"_s).isValid());
    }
};

PLOVENDIX_PLAIN_TEST(ValueTransformerTest)
#include "ValueTransformerTest.moc"
