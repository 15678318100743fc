#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/DialogFrame.h>
#include <ui/window/TitleBar.h>

#include <QDialog>
#include <QImage>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Margin = 28;
constexpr int TitleHeight = 38;

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
    }

    QPushButton *button;
};

QAbstractButton *closeButton(const QDialog &dialog)
{
    for (QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) {
        if (button->accessibleName() == u"Close"_s)
            return button;
    }
    return nullptr;
}

QRgb colourAt(QWidget &widget, const QPoint &point)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image.pixel(point);
}
} // namespace

class DialogFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsStandBelowTheTitleBarInsideTheFrame()
    {
        const Composited composited(true);
        FramedDialog dialog;
        dialog.resize(400, 300);
        dialog.show();
        QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
        QCOMPARE(dialog.contentsRect(),
                 QRect(Margin, Margin + TitleHeight, 400 - 2 * Margin, 300 - 2 * Margin - TitleHeight));
        QVERIFY(dialog.contentsRect().contains(dialog.button->geometry()));
    }

    void shadowLiesAroundTheFrame()
    {
        const Composited composited(true);
        FramedDialog dialog;
        dialog.resize(400, 300);
        dialog.show();
        QVERIFY(qAlpha(colourAt(dialog, {Margin, Margin})) < 255); // the rounded corner
        QCOMPARE(qAlpha(colourAt(dialog, {200, Margin + 5})), 255);
        const int shadow = qAlpha(colourAt(dialog, {200, 300 - Margin + 3}));
        QVERIFY2(shadow > 0 && shadow < 255, qPrintable(QString::number(shadow)));
    }

    void withoutACompositorItIsSquareAndHasNoMargin()
    {
        const Composited composited(false);
        FramedDialog dialog;
        dialog.resize(400, 300);
        dialog.show();
        QCOMPARE(dialog.contentsRect(), QRect(0, TitleHeight, 400, 300 - TitleHeight));
        QCOMPARE(qAlpha(colourAt(dialog, {0, 0})), 255);
    }

    void contentKeepsItsSizeWhenTheCompositorGoes_data()
    {
        QTest::addColumn<bool>("fixed");
        QTest::newRow("resizable") << false;
        QTest::newRow("of fixed size") << true;
    }
    void contentKeepsItsSizeWhenTheCompositorGoes()
    {
        QFETCH(bool, fixed);
        Composited composited(true);
        FramedDialog dialog;
        dialog.resize(400, 300);
        if (fixed)
            dialog.setFixedSize(400, 300);
        dialog.show();
        const QSize content = dialog.contentsRect().size();
        composited.change(false);
        Q_EMIT WindowSystem::shared().situationChanged();
        QCOMPARE(dialog.contentsRect().size(), content);
        QCOMPARE(dialog.size(), QSize(400 - 2 * Margin, 300 - 2 * Margin));
    }

    void closeButtonRejects()
    {
        FramedDialog dialog;
        dialog.show();
        QAbstractButton *button = closeButton(dialog);
        QVERIFY(button);
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(rejected.size(), 1);
        QVERIFY(!dialog.isVisible());
    }

    void closeButtonIsTheOnlyOneOfTheTitleBar()
    {
        FramedDialog dialog;
        dialog.show();
        const auto *bar = dialog.findChild<TitleBar *>();
        QVERIFY(bar);
        int shown = 0;
        for (const QAbstractButton *button : bar->findChildren<QAbstractButton *>())
            shown += button->isVisible() ? 1 : 0;
        QCOMPARE(shown, 1);
    }

    void focusIsOnTheControlsFirst()
    {
        FramedDialog dialog;
        dialog.show();
        dialog.activateWindow();
        QTRY_COMPARE(QApplication::focusWidget(), dialog.button);
        QTest::keyClick(&dialog, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), closeButton(dialog));
    }

    void onlyWhatCanBeResizedHasAGrip()
    {
        FramedDialog dialog;
        dialog.show();
        QVERIFY(dialog.findChild<QWidget *>(u"edgeGrip"_s)->isVisible());
        QMessageBox alert;
        alert.setText(u"A sentence."_s);
        DialogFrame::putAround(alert);
        alert.show();
        QVERIFY(!alert.findChild<QWidget *>(u"edgeGrip"_s)->isVisible());
        alert.close();
    }

    void alertIsLargeEnoughForItsText()
    {
        QMessageBox alert;
        alert.setText(u"The subtitle could not be saved, for there is a file of that name."_s);
        DialogFrame::putAround(alert);
        alert.show();
        for (const QWidget *child : alert.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (child->isVisible() && !child->inherits("TitleBar") &&
                child->objectName() != u"frameOverlay"_s)
                QVERIFY2(alert.contentsRect().contains(child->geometry()), child->metaObject()->className());
        }
        alert.close();
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(DialogFrameTest)
#include "DialogFrameTest.moc"
