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

/// Columns that hold white inside the label, as runs: one for each letter or part of a letter that stands
/// alone.
int whiteRunsInLabel(const QImage &icon)
{
    int runs = 0;
    bool inside = false;
    for (int x = 9 * 4; x < 47 * 4; ++x) {
        bool white = false;
        for (int y = 41 * 4; y < 52 * 4; ++y)
            white = white || icon.pixelColor(x, y) == QColor(Qt::white);
        runs += white && !inside ? 1 : 0;
        inside = white;
    }
    return runs;
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

    void formatIconIsAPageWithAReadableLabel_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("letters");
        for (const char *format : {"SRT", "ASS", "SSA", "VTT", "SUB", "TXT", "SMI", "MPL", "DFXP", "IDX"})
            QTest::newRow(format) << QString::fromLatin1(format) << int(qstrlen(format));
        QTest::newRow("UNKNOWN") << u"UNKNOWN"_s << 1;
    }
    void formatIconIsAPageWithAReadableLabel()
    {
        QFETCH(QString, name);
        QFETCH(int, letters);
        const QImage icon = drawn(name, 256);
        QCOMPARE(icon.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(icon.pixelColor(30 * 4, 10 * 4), QColor(Qt::white));
        const QColor label = icon.pixelColor(28 * 4, 39 * 4);
        QCOMPARE(label.alpha(), 255);
        QVERIFY2(contrast(label, Qt::white) >= LeastContrast, qPrintable(label.name()));
        QCOMPARE(whiteRunsInLabel(icon), letters);
    }

    void formatsAreToldApartByColour()
    {
        QStringList colours;
        for (const QString &name : {u"SRT"_s, u"ASS"_s, u"SSA"_s, u"VTT"_s, u"SUB"_s, u"TXT"_s, u"SMI"_s,
                                    u"MPL"_s, u"DFXP"_s, u"IDX"_s, u"UNKNOWN"_s})
            colours += drawn(name, 64).pixelColor(28, 39).name();
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

    void crossOfTheClearButtonIsAHole()
    {
        const QImage icon = drawn(u"Clear"_s, 128);
        QCOMPARE(icon.pixelColor(64, 64).alpha(), 0);
        QCOMPARE(icon.pixelColor(64, 20).alpha(), 255);
    }
};

PLOVENDIX_GUI_TEST(IconsTest)
#include "IconsTest.moc"
