#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/ChromeColors.h>
#include <ui/style/ChromeStyle.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
const QColor Accent(0x2f, 0x6f, 0xde);

using Maker = std::function<QWidget *(QWidget *)>;

template <class Control>
Maker makerOf(const QString &text, const QString &role = {})
{
    return [text, role](QWidget *parent) {
        auto *control = new Control(parent);
        control->setProperty("role", role);
        if constexpr (std::is_same_v<Control, QComboBox>)
            control->addItems({text, u"German"_s});
        else
            control->setText(text);
        control->setFocusPolicy(Qt::StrongFocus);
        return control;
    };
}

QImage picture(QWidget &widget)
{
    return widget.grab().toImage();
}

/// How many pixels a question is answered with yes for.
template <class Question>
int pixelsThat(const QImage &image, Question &&question)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += question(QPoint(x, y)) ? 1 : 0;
    }
    return count;
}

int pixelsOf(const QImage &image, const QColor &color)
{
    return pixelsThat(image, [&](const QPoint &place) { return image.pixelColor(place) == color; });
}
} // namespace

Q_DECLARE_METATYPE(Maker)

class ChromeStyleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new ChromeStyle); }

    void init() { QApplication::setPalette(ChromeColors::paletteFor(false, Accent)); }

    void heightsAreThoseOfTheLook_data()
    {
        QTest::addColumn<Maker>("maker");
        QTest::addColumn<int>("height");
        QTest::newRow("push button") << makerOf<QPushButton>(u"Check Now"_s) << 30;
        QTest::newRow("accented button") << makerOf<QPushButton>(u"Download"_s, u"accent"_s) << 30;
        QTest::newRow("tab") << makerOf<QPushButton>(u"General"_s, u"tab"_s) << 28;
        QTest::newRow("pill") << makerOf<QComboBox>(u"English"_s, u"pill"_s) << 22;
        QTest::newRow("combo box") << makerOf<QComboBox>(u"English"_s) << 28;
        QTest::newRow("field") << makerOf<QLineEdit>(u"film"_s) << 30;
        QTest::newRow("menu button") << makerOf<QToolButton>(QString(), u"menu"_s) << 22;
    }

    void heightsAreThoseOfTheLook()
    {
        QFETCH(Maker, maker);
        QFETCH(int, height);
        QWidget parent;
        QFont font;
        font.setPixelSize(13);
        parent.setFont(font);
        QWidget *control = maker(&parent);
        control->ensurePolished();
        QCOMPARE(control->sizeHint().height(), height);
    }

    void keyboardFocusIsSeenOnEveryControl_data()
    {
        QTest::addColumn<Maker>("maker");
        QTest::newRow("push button") << makerOf<QPushButton>(u"Check Now"_s);
        QTest::newRow("accented button") << makerOf<QPushButton>(u"Download"_s, u"accent"_s);
        QTest::newRow("tab") << makerOf<QPushButton>(u"General"_s, u"tab"_s);
        QTest::newRow("tool button") << makerOf<QToolButton>(u"Search"_s);
        QTest::newRow("menu button") << makerOf<QToolButton>(QString(), u"menu"_s);
        QTest::newRow("check box") << makerOf<QCheckBox>(u"Automatically"_s);
        QTest::newRow("combo box") << makerOf<QComboBox>(u"English"_s);
        QTest::newRow("pill") << makerOf<QComboBox>(u"English"_s, u"pill"_s);
        QTest::newRow("field") << makerOf<QLineEdit>(u"film"_s);
    }

    void keyboardFocusIsSeenOnEveryControl()
    {
        QFETCH(Maker, maker);
        QWidget window;
        auto *before = new QPushButton(u"Before"_s, &window);
        QWidget *control = maker(&window);
        control->move(0, 50);
        window.resize(300, 100);
        activate(window);
        before->setFocus(Qt::TabFocusReason);
        const QImage without = picture(*control);
        QTest::keyClick(before, Qt::Key_Tab);
        QVERIFY(control->hasFocus());
        const QImage with = picture(*control);
        const int changed =
            pixelsThat(with, [&](const QPoint &place) { return with.pixel(place) != without.pixel(place); });
        // More than the text cursor of a field.
        QVERIFY2(changed > 40, qPrintable(QString::number(changed)));
    }

    void aClickedButtonShowsNoRing()
    {
        QWidget window;
        auto *button = new QPushButton(u"Check Now"_s, &window);
        button->move(20, 20);
        activate(window);
        QTest::mouseClick(button, Qt::LeftButton);
        button->setAttribute(Qt::WA_UnderMouse, false);
        QVERIFY(button->hasFocus());
        QCOMPARE(pixelsOf(picture(*button), Accent), 0);
    }

    void focusedFieldHasARingOfTheAccent()
    {
        QWidget window;
        auto *field = new QLineEdit(&window);
        field->resize(200, 32);
        activate(window);
        field->setFocus();
        QImage image = picture(*field);
        QCOMPARE(image.pixelColor(100, 0), Accent);
        QCOMPARE(image.pixelColor(100, 1), Accent);
        QVERIFY(image.pixelColor(100, 2) != Accent);
        QVERIFY(image.pixelColor(0, 0) != Accent); // rounded
        field->clearFocus();
        image = picture(*field);
        QCOMPARE(pixelsOf(image, Accent), 0);
        const QColor border = ChromeColors::of(field->palette()).border;
        QCOMPARE(image.pixelColor(100, 0), border);
        QVERIFY(image.pixelColor(100, 1) != border);
    }

    void buttonsAreFilledByTheirRole_data()
    {
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("isDefault");
        QTest::addColumn<bool>("accented");
        QTest::newRow("plain") << QString() << false << false;
        QTest::newRow("accent") << u"accent"_s << false << true;
        QTest::newRow("default") << QString() << true << true;
    }

    void buttonsAreFilledByTheirRole()
    {
        QFETCH(QString, role);
        QFETCH(bool, isDefault);
        QFETCH(bool, accented);
        QWidget parent;
        QPushButton button(&parent);
        button.setProperty("role", role);
        button.setDefault(isDefault);
        button.resize(100, 30);
        const QColor fill = picture(button).pixelColor(10, 15);
        QCOMPARE(fill == Accent, accented);
        if (!accented)
            QVERIFY2(fill.red() == fill.green() && fill.red() < 250, qPrintable(fill.name()));
        button.setEnabled(false);
        QVERIFY(picture(button).pixelColor(10, 15) != Accent);
    }

    void tabIsFlatUntilChecked()
    {
        QWidget parent;
        QPushButton button(&parent);
        button.setProperty("role", u"tab"_s);
        button.setCheckable(true);
        button.resize(100, 28);
        const auto fill = [&button] { return picture(button).pixelColor(10, 14); };
        QCOMPARE(fill(), QColor(Qt::white));
        button.setChecked(true);
        QVERIFY(fill() != QColor(Qt::white));
    }

    void checkedBoxIsFilledWithTheAccent()
    {
        QCheckBox box(u"Automatically check"_s);
        QCOMPARE(pixelsOf(picture(box), Accent), 0);
        box.setChecked(true);
        QVERIFY(pixelsOf(picture(box), Accent) > 100);
    }

    void coloursFollowThePalette_data() { keyboardFocusIsSeenOnEveryControl_data(); }

    void coloursFollowThePalette()
    {
        QFETCH(Maker, maker);
        QApplication::setPalette(ChromeColors::paletteFor(true, Accent));
        QWidget parent;
        QWidget *control = maker(&parent);
        control->resize(control->sizeHint());
        // On a dark desktop the ground is dark everywhere, and what is written on it is light somewhere.
        const QImage image = picture(*control);
        const int light =
            pixelsThat(image, [&image](const QPoint &place) { return qGray(image.pixel(place)) > 140; });
        QVERIFY(light > 0);
        QVERIFY(light < image.width() * image.height() / 3);
    }

private:
    static void activate(QWidget &window)
    {
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ChromeStyleTest)
#include "ChromeStyleTest.moc"
