#include <features/search/DropAreaView.h>
#include <tests/support/TestMain.h>

#include <QTest>

class DropAreaViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frameIsDashedAndRoundAndTheMiddleIsEmpty()
    {
        DropAreaView view;
        QCOMPARE(view.sizeHint(), QSize(300, 196));
        view.resize(view.sizeHint());
        const QImage image = view.grab().toImage();
        const auto isInked = [&](int x, int y) {
            return image.pixelColor(x, y) != image.pixelColor(150, 98);
        };
        int inked = 0;
        for (int x = 50; x < 250; ++x)
            inked += isInked(x, 0);
        QVERIFY2(inked > 100 && inked < 180, qPrintable(QString::number(inked)));
        for (int x = 0; x < 4; ++x)
            QVERIFY(!isInked(x, x));
        for (int x = 3; x < 297; ++x)
            QVERIFY(!isInked(x, 98));
    }
};

PLOVENDIX_GUI_TEST(DropAreaViewTest)
#include "DropAreaViewTest.moc"
