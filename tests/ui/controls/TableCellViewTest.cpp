#include <tests/ui/views/Painted.h>

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/controls/TableCellView.h>
#include <ui/views/ImageView.h>

#include <QHBoxLayout>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
class CountingLayout final : public QHBoxLayout
{
public:
    using QHBoxLayout::QHBoxLayout;
    void setGeometry(const QRect &rect) override
    {
        ++count;
        QHBoxLayout::setGeometry(rect);
    }
    int count = 0;
};

/// A square of 40 on the left, and beside it, inside a common widget, two labels one above the other.
struct Cell
{
    Cell()
    {
        outer->setContentsMargins(10, 0, 0, 0);
        outer->setSpacing(0);
        square->setFixedSize(40, 40);
        outer->addWidget(square);
        outer->addWidget(texts);
        auto *column = new QVBoxLayout(texts);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(title);
        column->addWidget(details);
        view.setImageView(square);
        square->setImage(solidImage({40, 40}, Qt::red));
        title->setText(u"Title"_s);
        details->setText(u"Details"_s);
    }

    QImage drawn(const QRect &rect)
    {
        return painted({300, 200}, [&](QPainter &painter) { view.draw(painter, rect); });
    }

    TableCellView view;
    CountingLayout *outer = new CountingLayout(&view);
    ImageView *square = new ImageView;
    QWidget *texts = new QWidget;
    ui::Label *title = new ui::Label;
    ui::Label *details = new ui::Label;
};
} // namespace

class TableCellViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsAreDrawnWhereTheyAreLaidOut()
    {
        Cell cell;
        QCOMPARE(cell.view.imageView(), cell.square);
        QCOMPARE(TableCellView().imageView(), nullptr);
        const QImage image = cell.drawn({20, 100, 250, 80});
        QCOMPARE(image.pixelColor(29, 140), QColor(Qt::white));
        QCOMPARE(image.pixelColor(30, 121), QColor(Qt::red));
        QCOMPARE(image.pixelColor(69, 158), QColor(Qt::red));
        QVERIFY(hasInk(image, {70, 100, 200, 40}));
        QVERIFY(hasInk(image, {70, 140, 200, 40}));
        QVERIFY(!hasInk(image, {0, 0, 300, 100}));
        QVERIFY(!cell.view.isVisible());
    }

    void contentsNeedNoLayout()
    {
        Cell cell;
        cell.drawn({0, 0, 250, 80});
        QCoreApplication::sendPostedEvents(); // of the cell's making
        cell.drawn({0, 0, 250, 80});
        const int layouts = cell.outer->count;
        QVERIFY(layouts > 0);
        for (int row = 0; row < 5; ++row) {
            cell.title->setText(u"A longer title %1"_s.arg(row));
            cell.details->setText(QString(row, u'x'));
            cell.square->setImage(solidImage({40 + row, 40}, Qt::blue));
            cell.drawn({0, row, 250, 80});
            QCoreApplication::sendPostedEvents();
        }
        QCOMPARE(cell.outer->count, layouts);
    }

    void anotherSizeOrFontIsLaidOutAnew()
    {
        Cell cell;
        cell.drawn({0, 0, 250, 80});
        const QImage image = cell.drawn({0, 0, 250, 120});
        QCOMPARE(image.pixelColor(20, 78), QColor(Qt::red));
        QCOMPARE(image.pixelColor(20, 38), QColor(Qt::white));
        const int before = cell.title->height();
        QFont large = cell.view.font();
        large.setPointSize(large.pointSize() * 2);
        cell.view.setFont(large);
        cell.drawn({0, 0, 250, 120});
        QVERIFY(cell.title->height() > before);
        cell.view.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(cell.drawn({0, 0, 250, 120}).pixelColor(230, 60), QColor(Qt::red));
    }

    void partsComeGoAndHide()
    {
        Cell cell;
        const auto colorAt = [&](int x, int y) { return cell.drawn({0, 0, 250, 80}).pixelColor(x, y); };
        QCOMPARE(colorAt(30, 40), QColor(Qt::red));
        auto *late = new ImageView(&cell.view);
        late->setGeometry(200, 0, 20, 20);
        late->setImage(solidImage({20, 20}, Qt::blue));
        QCOMPARE(colorAt(210, 10), QColor(Qt::blue));
        delete late;
        QVERIFY(colorAt(210, 10) != QColor(Qt::blue));
        cell.square->hide();
        QVERIFY(colorAt(30, 40) != QColor(Qt::red));
        cell.square->show();
        QCOMPARE(colorAt(30, 40), QColor(Qt::red));
    }
};

PLOVENDIX_GUI_TEST(TableCellViewTest)
#include "TableCellViewTest.moc"
