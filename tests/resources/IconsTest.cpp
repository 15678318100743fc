#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
constexpr double LeastContrast = 3.0; // what graphical objects need to be made out

QString iconPath(const QString &name)
{
    return Bundle::main().folder() + u"/icons/"_s + name + u".svg"_s;
}

QImage drawn(const QString &name, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(iconPath(name));
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, size, size));
    return image;
}

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}
} // namespace

/// The drawings that ship with the program.
class IconsTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    void everyIconIsADrawingWithoutFonts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("size");
        for (const char *format :
             {"SRT", "ASS", "SSA", "VTT", "SUB", "TXT", "SMI", "MPL", "DFXP", "IDX", "UNKNOWN", "DropVideo"})
            QTest::newRow(format) << QString::fromLatin1(format) << 64;
        for (const char *control : {"Magnifier", "Clear", "Menu"})
            QTest::newRow(control) << QString::fromLatin1(control) << 16;
        QTest::newRow("application") << u"com.quorvane.Plovendix"_s << 128;
    }
    void everyIconIsADrawingWithoutFonts()
    {
        QFETCH(QString, name);
        QFETCH(int, size);
        const QSvgRenderer renderer(iconPath(name));
        QVERIFY(renderer.isValid());
        QCOMPARE(renderer.defaultSize(), QSize(size, size));
        QFile file(iconPath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("<text"));
    }

    void formatsAreToldApartByAReadableLabel()
    {
        QStringList colours;
        for (const char *format :
             {"SRT", "ASS", "SSA", "VTT", "SUB", "TXT", "SMI", "MPL", "DFXP", "IDX", "UNKNOWN"}) {
            const QColor label = drawn(QString::fromLatin1(format), 64).pixelColor(28, 39);
            QVERIFY2(label.alpha() == 255 && contrast(label, Qt::white) >= LeastContrast, format);
            colours += label.name();
        }
        QCOMPARE(colours.removeDuplicates(), 0);
    }

    void controlsShowOnLightAndDarkGround_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Magnifier", "Clear", "Menu", "DropVideo"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void controlsShowOnLightAndDarkGround()
    {
        QFETCH(QString, name);
        const QImage icon = drawn(name, 128);
        QColor strongest(Qt::transparent);
        for (int y = 0; y < icon.height(); ++y) {
            for (int x = 0; x < icon.width(); ++x) {
                if (icon.pixelColor(x, y).alpha() > strongest.alpha())
                    strongest = icon.pixelColor(x, y);
            }
        }
        QCOMPARE(strongest.alpha(), 255);
        QVERIFY2(contrast(strongest, QColor(u"#ffffff"_s)) >= LeastContrast, qPrintable(strongest.name()));
        QVERIFY2(contrast(strongest, QColor(u"#202225"_s)) >= LeastContrast, qPrintable(strongest.name()));
    }
};

PLOVENDIX_GUI_TEST(IconsTest)
#include "IconsTest.moc"
