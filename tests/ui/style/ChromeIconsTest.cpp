#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/AppearancePalette.h>
#include <ui/style/ChromeIcons.h>
#include <ui/style/ChromeStyle.h>

#include <QApplication>
#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr QColor Accent(0x2f, 0x6f, 0xde);

QImage drawn(QStyle::StandardPixmap sign, QIcon::Mode mode = QIcon::Normal)
{
    return makeChromeIcon(sign).pixmap(QSize(48, 48), mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

int inkedPixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
    return count;
}
} // namespace

/// The signs of the stock dialogs.
class ChromeIconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QApplication::setPalette(appearancePalette(Appearance::Scheme::Light, Accent)); }

    void everySignIsItsOwnDrawing_data()
    {
        QTest::addColumn<QStyle::StandardPixmap>("sign");
        QTest::newRow("clear") << QStyle::SP_LineEditClearButton;
        QTest::newRow("warning") << QStyle::SP_MessageBoxWarning;
        QTest::newRow("question") << QStyle::SP_MessageBoxQuestion;
        QTest::newRow("folder") << QStyle::SP_DirIcon;
        QTest::newRow("file") << QStyle::SP_FileIcon;
        QTest::newRow("computer") << QStyle::SP_ComputerIcon;
        QTest::newRow("drive") << QStyle::SP_DriveHDIcon;
        QTest::newRow("back") << QStyle::SP_ArrowBack;
        QTest::newRow("forward") << QStyle::SP_ArrowForward;
        QTest::newRow("to parent") << QStyle::SP_FileDialogToParent;
        QTest::newRow("new folder") << QStyle::SP_FileDialogNewFolder;
        QTest::newRow("as icons") << QStyle::SP_FileDialogListView;
        QTest::newRow("as list") << QStyle::SP_FileDialogDetailedView;
    }
    void everySignIsItsOwnDrawing()
    {
        QFETCH(QStyle::StandardPixmap, sign);
        const QImage image = drawn(sign);
        QCOMPARE(image.size(), QSize(48, 48));
        const int inked = inkedPixels(image);
        QVERIFY2(inked > 60 && inked < 48 * 48, qPrintable(QString::number(inked)));
        QVERIFY(!m_seen.contains(image));
        m_seen += image;
    }

    void whatIsNotDrawnHereComesFromTheStyleBelow()
    {
        QVERIFY(makeChromeIcon(QStyle::SP_MediaPlay).isNull());
        const ChromeStyle style;
        QVERIFY(!style.standardIcon(QStyle::SP_MediaPlay, nullptr, nullptr).isNull());
    }

    void styleGivesTheseToTheDialogs()
    {
        const ChromeStyle style;
        const QIcon icon = style.standardIcon(QStyle::SP_MessageBoxWarning, nullptr, nullptr);
        QCOMPARE(icon.pixmap(QSize(48, 48)).toImage().convertToFormat(QImage::Format_ARGB32),
                 drawn(QStyle::SP_MessageBoxWarning));
    }

    void signsFollowThePalette()
    {
        const QImage light = drawn(QStyle::SP_ArrowBack);
        QApplication::setPalette(appearancePalette(Appearance::Scheme::Dark, Accent));
        QVERIFY(drawn(QStyle::SP_ArrowBack) != light);
    }

    void disabledSignsAreFainter()
    {
        QVERIFY(drawn(QStyle::SP_ArrowForward, QIcon::Disabled) != drawn(QStyle::SP_ArrowForward));
    }

private:
    Sandbox m_sandbox;
    QList<QImage> m_seen;
};

PLOVENDIX_GUI_TEST(ChromeIconsTest)
#include "ChromeIconsTest.moc"
