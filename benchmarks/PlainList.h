#pragma once
#include <model/Subtitle.h>
#include <QListView>
#include <memory>

/// A list of the toolkit's own whose delegate draws a picture and two texts, and nothing else: the floor of
/// the results list. The texts are made before.
class PlainList final : public QListView
{
    Q_OBJECT

public:
    explicit PlainList(const QList<SubtitlePtr> &subtitles);
    ~PlainList() override;

    /// Drops all rows and has them again, laid out.
    void reload();

private:
    class Rows;
    class Painter;
    std::unique_ptr<Rows> m_rows;
    std::unique_ptr<Painter> m_painter;
};
