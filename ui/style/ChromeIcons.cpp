#include "ChromeColors.h"
#include "ChromePainting.h"

#include <base/Bundle.h>

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <array>

namespace
{
struct Drawing
{
    QStyle::StandardPixmap sign;
    const char *name; // of the file in the bundle's folder "icons/dialogs"
};
constexpr std::array Drawings{
    Drawing{QStyle::SP_LineEditClearButton, "Clear"},
    Drawing{QStyle::SP_MessageBoxWarning, "Warning"},
    Drawing{QStyle::SP_MessageBoxQuestion, "Question"},
    Drawing{QStyle::SP_DirIcon, "Folder"},
    Drawing{QStyle::SP_DirClosedIcon, "Folder"},
    Drawing{QStyle::SP_DirOpenIcon, "Folder"},
    Drawing{QStyle::SP_DirLinkIcon, "Folder"},
    Drawing{QStyle::SP_DirHomeIcon, "Folder"},
    Drawing{QStyle::SP_FileIcon, "File"},
    Drawing{QStyle::SP_FileLinkIcon, "File"},
    Drawing{QStyle::SP_ComputerIcon, "Computer"},
    Drawing{QStyle::SP_DriveHDIcon, "Drive"},
    Drawing{QStyle::SP_DriveNetIcon, "Drive"},
    Drawing{QStyle::SP_ArrowBack, "Back"},
    Drawing{QStyle::SP_ArrowForward, "Forward"},
    Drawing{QStyle::SP_FileDialogToParent, "Parent"},
    Drawing{QStyle::SP_FileDialogNewFolder, "NewFolder"},
    Drawing{QStyle::SP_FileDialogListView, "ListView"},
    Drawing{QStyle::SP_FileDialogDetailedView, "DetailedView"},
};

QColor inkOf(const ChromeColors &colors, QIcon::Mode mode)
{
    if (mode == QIcon::Disabled)
        return ChromeColors::mixed(colors.window, colors.text, 0.25);
    return mode == QIcon::Active ? colors.text : colors.secondaryText;
}

/// Draws an SVG file in the application's present colours, which the file names as CSS variables. The file is
/// read when the icon is first drawn.
class ChromeIconEngine final : public QIconEngine
{
public:
    explicit ChromeIconEngine(const char *drawing) : m_drawing(drawing) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal side = qMin(rect.width(), rect.height());
        QSvgRenderer renderer(coloredDrawing(mode));
        renderer.render(painter, QRectF(rect.x() + (rect.width() - side) / 2,
                                        rect.y() + (rect.height() - side) / 2, side, side));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new ChromeIconEngine(*this); }

private:
    QByteArray coloredDrawing(QIcon::Mode mode)
    {
        if (m_svg.isEmpty()) {
            QFile file(Bundle::main().folder() +
                       QStringLiteral("/icons/dialogs/%1.svg").arg(QLatin1String(m_drawing)));
            if (file.open(QIODevice::ReadOnly))
                m_svg = file.readAll();
        }
        const ChromeColors colors = ChromeColors::of(QGuiApplication::palette());
        QByteArray svg = m_svg;
        svg.replace("var(--ink)", inkOf(colors, mode).name().toLatin1());
        svg.replace("var(--field)", colors.field.name().toLatin1());
        svg.replace("var(--accent)", colors.accent.name().toLatin1());
        svg.replace("var(--accent-text)", colors.accentText.name().toLatin1());
        svg.replace("var(--accent-shade)", colors.accent.darker(120).name().toLatin1());
        return svg;
    }

    const char *m_drawing;
    QByteArray m_svg;
};
} // namespace

QIcon ChromePainting::dialogIcon(QStyle::StandardPixmap sign)
{
    const auto *drawing = std::find_if(Drawings.begin(), Drawings.end(),
                                       [sign](const Drawing &candidate) { return candidate.sign == sign; });
    return drawing == Drawings.end() ? QIcon() : QIcon(new ChromeIconEngine(drawing->name));
}
