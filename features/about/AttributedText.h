#pragma once
#include <QColor>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

class QFont;
class QTextDocument;

/// Text in runs that each look one way; "\n" ends a paragraph. A plain value; any thread, but what it is
/// written to belongs to its own.
class AttributedText final
{
public:
    /// The size that stands for the reader's own, in points.
    static constexpr double NormalSize = 12;

    struct Attributes
    {
        bool bold = false;
        bool italic = false;
        double size = NormalSize; // points
        std::optional<QColor> foreground =
            {};         // none: the label colour of whoever shows the text, followed live
        QUrl link = {}; // empty for none

        bool operator==(const Attributes &) const = default;
    };
    struct Run
    {
        QString text;
        Attributes attributes;
    };

    const QList<Run> &runs() const { return m_runs; }
    QString text() const;
    /// Adds text at the end; it joins the last run where that looks the same.
    void append(const QString &text, const Attributes &attributes);
    /// One colour for the whole text; none is the label colour.
    void setForegroundColor(const std::optional<QColor> &color);
    /// Replaces the document's content. Sizes come out in proportion to `base`, so that the text follows the
    /// desktop's font size. Links are underlined.
    void writeTo(QTextDocument &document, const QFont &base) const;

private:
    QList<Run> m_runs;
};
