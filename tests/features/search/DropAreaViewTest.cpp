#include <features/search/DropAreaView.h>
#include <tests/support/TestMain.h>

#include <QTest>

namespace
{
bool isInked(const QImage &image, int x, int y)
{
    return image.pixelColor(x, y) != image.pixelColor(150, 98);
}
} // namespace

class DropAreaViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTheDesignedSize()
    {
        const DropAreaView view;
        QCOMPARE(view.sizeHint(), QSize(300, 196));
    }

    void frameIsDashed()
    {
        DropAreaView view;
        view.resize(view.sizeHint());
        const QImage image = view.grab().toImage();
        int inked = 0;
        for (int x = 50; x < 250; ++x)
            inked += isInked(image, x, 0);
        QVERIFY2(inked > 100 && inked < 180, qPrintable(QString::number(inked)));
    }

    void cornersAreRoundAndTheMiddleIsEmpty()
    {
        DropAreaView view;
        view.resize(view.sizeHint());
        const QImage image = view.grab().toImage();
        for (int x = 0; x < 4; ++x)
            QVERIFY(!isInked(image, x, x));
        for (int x = 3; x < 297; ++x)
            QVERIFY(!isInked(image, x, 98));
    }
};

PLOVENDIX_GUI_TEST(DropAreaViewTest)
#include "DropAreaViewTest.moc"
