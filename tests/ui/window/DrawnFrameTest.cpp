#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/DialogFrame.h>

#include <QDialog>
#include <QImage>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize Content{500, 400};
constexpr int Margin = 28;
constexpr QMargins Margins(Margin, Margin, Margin, Margin);
constexpr int TitleHeight = 38;
constexpr int Middle = 200;

/// A dialog with one button, in the frame.
class FramedDialog final : public QDialog
{
public:
    FramedDialog()
    {
        auto *layout = new QVBoxLayout(this);
        button = new QPushButton(u"OK"_s, this);
        layout->addWidget(button);
        DialogFrame::putAround(*this);
        resize(400, 300);
    }

    QPushButton *button;
};

QWidget *gripOf(const QWidget &window)
{
    return window.findChild<QWidget *>(u"edgeGrip"_s);
}

QImage picture(QWidget &window)
{
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}
} // namespace

/// The frame around windows and stock dialogs.
class DrawnFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frameStaysInPlaceWhenTheCompositorComesAndGoes()
    {
        Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        QCOMPARE(window.size(), QSize(500 + 2 * Margin, 400 + TitleHeight + 2 * Margin));
        window.move(100, 100);
        window.show();
        const QRect frame = window.geometry().marginsRemoved(Margins);
        composited.change(false);
        QCOMPARE(window.shadowMargin(), 0);
        QCOMPARE(window.childAt(2, Middle), gripOf(window));
        QCOMPARE(window.geometry(), frame);
        QCOMPARE(window.contentSize(), Content);
        composited.change(true);
        QCOMPARE(window.shadowMargin(), Margin);
        QCOMPARE(window.childAt(Margin - 3, Middle), gripOf(window));
        QCOMPARE(window.geometry().marginsRemoved(Margins), frame);
    }

    void restoredFrameIsWhereItWas_data()
    {
        QTest::addColumn<bool>("composited");
        QTest::newRow("compositor all the time") << true;
        QTest::newRow("compositor that comes meanwhile") << false;
    }
    void restoredFrameIsWhereItWas()
    {
        QFETCH(bool, composited);
        Composited compositor(composited);
        ui::Window window;
        window.setContentSize(Content);
        window.move(100, 100);
        window.show();
        QVERIFY(gripOf(window)->isVisible());
        const int margin = window.shadowMargin();
        const QRect frame = window.geometry().marginsRemoved({margin, margin, margin, margin});
        window.showMaximized();
        compositor.change(true);
        QCOMPARE(window.shadowMargin(), 0);
        QVERIFY(!gripOf(window)->isVisible());
        window.showNormal();
        QCOMPARE(window.shadowMargin(), Margin);
        QTRY_COMPARE(window.geometry().marginsRemoved(Margins), frame);
        window.showFullScreen();
        QCOMPARE(window.shadowMargin(), 0);
        QVERIFY(!gripOf(window)->isVisible());
    }

    void contentNeverCoversTheShadow()
    {
        const Composited composited(true);
        ui::Window window;
        fillWithRed(window);
        activate(window);
        const QImage image = picture(window);
        const int right = image.width() - Margin - 1;
        const int bottom = image.height() - Margin - 1;
        for (const QPoint corner :
             {QPoint(Margin, Margin), QPoint(right, Margin), QPoint(Margin, bottom), QPoint(right, bottom)}) {
            const QColor color = image.pixelColor(corner);
            QVERIFY2(color.alpha() < 128, "A corner covers what is behind it");
            QCOMPARE(color.red(), 0); // the shadow is black
        }
        QCOMPARE(image.pixelColor(Margin, Middle), QColor(Qt::red));
        QCOMPARE(image.pixelColor(Margin + 13, Margin), QColor(Qt::red));

        const auto shadow = [&image](int x, int y) { return qAlpha(image.pixel(x, y)); };
        QVERIFY(shadow(0, Middle) <= 4 && shadow(Middle, image.height() - 1) <= 4);
        for (int x = 0; x < Margin - 2; ++x)
            QVERIFY(shadow(x, Middle) <= shadow(x + 1, Middle));
        QVERIFY(shadow(Margin - 3, Middle) > 20);
        // It falls downwards.
        QVERIFY(shadow(Middle, bottom + 4) > shadow(Middle, Margin - 4));

        ui::Window other;
        activate(other);
        QVERIFY(qAlpha(picture(window).pixel(Margin - 3, Middle)) < shadow(Margin - 3, Middle));
    }

    void contentFillsTheCornersOfASquareWindow()
    {
        const Composited composited(false);
        ui::Window window;
        fillWithRed(window);
        window.showMaximized();
        const QImage image = picture(window);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), QColor(Qt::red));
    }

    void gripShowsTheWayItResizes()
    {
        const Composited composited(true);
        ui::Window window;
        window.setContentSize(Content);
        window.show();
        QWidget *grip = gripOf(window);
        QCOMPARE(window.childAt(Margin - 3, Middle), grip);
        QVERIFY(window.childAt(Margin + 1, Middle) != grip);
        QTest::mouseMove(grip, {Margin - 3, Middle});
        QTRY_COMPARE(grip->cursor().shape(), Qt::SizeHorCursor);
        QTest::mouseMove(grip, {Margin - 3, Margin - 3});
        QTRY_COMPARE(grip->cursor().shape(), Qt::SizeFDiagCursor);
        window.setResizable(false);
        QVERIFY(!grip->isVisible());
    }

    void controlsOfADialogStandInsideTheFrame_data()
    {
        QTest::addColumn<bool>("composited");
        QTest::addColumn<int>("margin");
        QTest::newRow("with a compositor") << true << Margin;
        QTest::newRow("without") << false << 0;
    }
    void controlsOfADialogStandInsideTheFrame()
    {
        QFETCH(bool, composited);
        QFETCH(int, margin);
        const Composited compositor(composited);
        FramedDialog dialog;
        dialog.show();
        QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(dialog.contentsRect(),
                 QRect(margin, margin + TitleHeight, 400 - 2 * margin, 300 - 2 * margin - TitleHeight));
        QVERIFY(dialog.contentsRect().contains(dialog.button->geometry()));
        const QImage image = picture(dialog);
        QCOMPARE(qAlpha(image.pixel(margin, margin)) == 255, !composited); // the rounded corner
        QCOMPARE(qAlpha(image.pixel(200, margin + 5)), 255);
        QCOMPARE(qAlpha(image.pixel(200, 300 - 1 - margin / 2)) == 255, !composited); // the shadow
    }

    void dialogKeepsItsContentsSizeWhenTheCompositorGoes_data()
    {
        QTest::addColumn<bool>("fixed");
        QTest::newRow("resizable") << false;
        QTest::newRow("of fixed size") << true;
    }
    void dialogKeepsItsContentsSizeWhenTheCompositorGoes()
    {
        QFETCH(bool, fixed);
        Composited composited(true);
        FramedDialog dialog;
        if (fixed)
            dialog.setFixedSize(400, 300);
        dialog.show();
        QCOMPARE(gripOf(dialog)->isVisible(), !fixed);
        const QSize content = dialog.contentsRect().size();
        composited.change(false);
        QCOMPARE(dialog.contentsRect().size(), content);
        QCOMPARE(dialog.size(), QSize(400 - 2 * Margin, 300 - 2 * Margin));
    }

    void dialogHasACloseButtonAloneAndLastInTheTabOrder()
    {
        FramedDialog dialog;
        activate(dialog);
        QTRY_COMPARE(QApplication::focusWidget(), dialog.button);
        QTest::keyClick(&dialog, Qt::Key_Tab);
        QAbstractButton *close = buttonNamed(dialog, u"Close"_s);
        QCOMPARE(QApplication::focusWidget(), close);
        QVERIFY(!buttonNamed(dialog, u"Minimize"_s)->isVisible());
        QVERIFY(!buttonNamed(dialog, u"Maximize"_s)->isVisible());
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        QTest::mouseClick(close, Qt::LeftButton);
        QCOMPARE(rejected.size(), 1);
        QVERIFY(!dialog.isVisible());
    }

    void alertIsLargeEnoughForItsTextAndHasNoGrip()
    {
        QMessageBox alert;
        alert.setText(u"The subtitle could not be saved, because there is a file of that name."_s);
        DialogFrame::putAround(alert);
        alert.show();
        QVERIFY(!gripOf(alert)->isVisible());
        for (const QWidget *child : alert.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (child->isVisible() && !child->inherits("TitleBar") &&
                child->objectName() != u"frameOverlay"_s)
                QVERIFY2(alert.contentsRect().contains(child->geometry()), child->metaObject()->className());
        }
        alert.close();
    }

private:
    static void fillWithRed(ui::Window &window)
    {
        const auto controller = ViewController::make<ViewController>();
        QPalette red;
        red.setColor(QPalette::Window, Qt::red);
        controller->view()->setPalette(red);
        controller->view()->setAutoFillBackground(true);
        window.setFullSizeContentView(true);
        window.setTitlebarAppearsTransparent(true);
        window.setContentViewController(controller);
        window.setContentSize(Content);
    }

    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DrawnFrameTest)
#include "DrawnFrameTest.moc"
