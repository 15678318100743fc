#include "Painted.h"

#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/views/Glyphs.h>

using namespace Qt::StringLiterals;

class GlyphsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shapeHasTheColourOfThePalette()
    {
        m_sandbox.writeFile(u"glyphs/icons/Upper.svg"_s,
                            "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'>"
                            "<rect width='4' height='2' fill='#00ff00'/></svg>");
        Bundle::setMainFolder(m_sandbox.path(u"glyphs"_s));
        QPalette palette;
        palette.setColor(QPalette::PlaceholderText, Qt::blue);
        palette.setColor(QPalette::ButtonText, Qt::red);
        palette.setColor(QPalette::Window, Qt::white);

        GlyphView view;
        view.setPalette(palette);
        view.resize(30, 30);
        view.setProperty("glyph", u"Upper"_s);
        QCOMPARE(view.grab().toImage().pixelColor(2, 10), QColor(Qt::blue));
        QCOMPARE(view.grab().toImage().pixelColor(2, 20), QColor(Qt::white));
        view.setProperty("glyph", u"Unknown"_s);
        QCOMPARE(view.grab().toImage().pixelColor(2, 10), QColor(Qt::white));

        GlyphButton button; // of 16 points in the middle, faint until the mouse is over it
        button.setPalette(palette);
        button.resize(30, 30);
        button.setProperty("glyph", u"Upper"_s);
        QVERIFY(button.autoRaise());
        const QImage image = button.grab().toImage();
        QVERIFY(isNear(image.pixelColor(8, 8), QColor(255, 102, 102), 8));
        QVERIFY(isNear(image.pixelColor(6, 8), Qt::white, 8));
        QVERIFY(isNear(image.pixelColor(8, 6), Qt::white, 8));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(GlyphsTest)
#include "GlyphsTest.moc"
