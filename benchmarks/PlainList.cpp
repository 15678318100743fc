#include "PlainList.h"

#include <ui/views/Image.h>

#include <QAbstractListModel>
#include <QPainter>
#include <QPixmap>
#include <QStyledItemDelegate>

namespace
{
constexpr int RowHeight = 80;
constexpr int IconSide = 64;
constexpr int DetailRole = Qt::UserRole;
} // namespace

class PlainList::Rows final : public QAbstractListModel
{
public:
    explicit Rows(const QList<SubtitlePtr> &subtitles)
    {
        for (const SubtitlePtr &subtitle : subtitles)
            m_texts.append({subtitle->subFileName, subtitle->detailString()});
    }

    void reset()
    {
        beginResetModel();
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_texts.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return m_texts[index.row()].first;
        return role == DetailRole ? QVariant(m_texts[index.row()].second) : QVariant();
    }

private:
    QList<std::pair<QString, QString>> m_texts;
};

class PlainList::Painter final : public QStyledItemDelegate
{
public:
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QRect row = option.rect;
        painter->drawPixmap(row.x() + 16, row.y() + 8, m_icon);
        const QRect texts = row.adjusted(96, 0, -16, 0);
        painter->drawText(texts.adjusted(0, 18, 0, 0), index.data().toString());
        painter->drawText(texts.adjusted(0, 42, 0, 0), index.data(DetailRole).toString());
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return {1, RowHeight};
    }

private:
    const QPixmap m_icon = ui::Image::named(QStringLiteral("SRT"))->pixmap(QSizeF(IconSide, IconSide), 1);
};

PlainList::PlainList(const QList<SubtitlePtr> &subtitles)
    : m_rows(std::make_unique<Rows>(subtitles)), m_painter(std::make_unique<Painter>())
{
    setModel(m_rows.get());
    setItemDelegate(m_painter.get());
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

PlainList::~PlainList() = default;

void PlainList::reload()
{
    m_rows->reset();
    doItemsLayout();
}
