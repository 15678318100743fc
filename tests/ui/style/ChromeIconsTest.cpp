#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/ChromeColors.h>
#include <ui/style/ChromeStyle.h>

#include <QApplication>
#include <QIcon>

namespace
{
const QColor Accent(0x2f, 0x6f, 0xde);

/// The colour at a place of 16 × 16.
QColor colorIn(const QIcon &icon, const QPoint &place, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(64, 64), mode).toImage().pixelColor(4 * place.x() + 1, 4 * place.y());
}
} // namespace

/// The signs of the stock dialogs.
class ChromeIconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new ChromeStyle); }
    void init() { QApplication::setPalette(ChromeColors::paletteFor(false, Accent)); }

    void signsOfTheDialogsAreDrawnInThePresentColours_data()
    {
        QTest::addColumn<QStyle::StandardPixmap>("sign");
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QString>("light");
        QTest::addColumn<QString>("dark");
        const auto row = [](const char *name, QStyle::StandardPixmap sign, const QPoint &place,
                            const char *light, const char *dark) {
            QTest::newRow(name) << sign << place << QString::fromLatin1(light) << QString::fromLatin1(dark);
        };
        // Each at one of 16 × 16 places where it is drawn; the ink is the secondary text colour.
        row("clear", QStyle::SP_LineEditClearButton, {8, 2}, "#6e7072", "#a3a5a7");
        row("cross of the clear sign", QStyle::SP_LineEditClearButton, {8, 8}, "#ffffff", "#2a2c30");
        row("warning", QStyle::SP_MessageBoxWarning, {5, 12}, "#f2a31b", "#f2a31b");
        row("question", QStyle::SP_MessageBoxQuestion, {3, 8}, "#2f6fde", "#2f6fde");
        row("dot of the question mark", QStyle::SP_MessageBoxQuestion, {8, 12}, "#ffffff", "#ffffff");
        row("folder", QStyle::SP_DirIcon, {8, 10}, "#2f6fde", "#2f6fde");
        row("back of the folder", QStyle::SP_DirHomeIcon, {4, 4}, "#275cb9", "#275cb9");
        row("sheet", QStyle::SP_FileLinkIcon, {8, 8}, "#ffffff", "#2a2c30");
        row("computer", QStyle::SP_ComputerIcon, {8, 11}, "#6e7072", "#a3a5a7");
        row("drive", QStyle::SP_DriveNetIcon, {11, 8}, "#6e7072", "#a3a5a7");
        row("back", QStyle::SP_ArrowBack, {4, 8}, "#6e7072", "#a3a5a7");
        row("forward", QStyle::SP_ArrowForward, {12, 8}, "#6e7072", "#a3a5a7");
        row("to the parent", QStyle::SP_FileDialogToParent, {8, 4}, "#6e7072", "#a3a5a7");
        row("new folder", QStyle::SP_FileDialogNewFolder, {12, 12}, "#6e7072", "#a3a5a7");
        row("as icons", QStyle::SP_FileDialogListView, {12, 13}, "#6e7072", "#a3a5a7");
        row("as list", QStyle::SP_FileDialogDetailedView, {8, 8}, "#6e7072", "#a3a5a7");
    }
    void signsOfTheDialogsAreDrawnInThePresentColours()
    {
        QFETCH(QStyle::StandardPixmap, sign);
        QFETCH(QPoint, place);
        QFETCH(QString, light);
        QFETCH(QString, dark);
        const QIcon icon = QApplication::style()->standardIcon(sign);
        QCOMPARE(colorIn(icon, place).name(), light);
        QApplication::setPalette(ChromeColors::paletteFor(true, Accent));
        QCOMPARE(colorIn(icon, place).name(), dark);
    }

    void disabledSignsAreFainterAndActiveOnesStronger()
    {
        const QIcon icon = QApplication::style()->standardIcon(QStyle::SP_ArrowBack);
        const auto lightness = [&icon](QIcon::Mode mode) { return colorIn(icon, {4, 8}, mode).lightness(); };
        QVERIFY(lightness(QIcon::Disabled) > lightness(QIcon::Normal) + 30);
        QVERIFY(lightness(QIcon::Active) < lightness(QIcon::Normal) - 30);
    }

    void signWithoutADrawingComesFromTheStyleBelow()
    {
        QVERIFY(!QApplication::style()->standardIcon(QStyle::SP_MediaPlay).isNull());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ChromeIconsTest)
#include "ChromeIconsTest.moc"
