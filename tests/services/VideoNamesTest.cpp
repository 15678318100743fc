#include <services/video/VideoNames.h>
#include <support/TestMain.h>

#include <QTest>

class VideoNamesTest : public QObject
{
    Q_OBJECT

    static VideoHash video(quint64 size) { return {QStringLiteral("0123456789abcdef"), size}; }

private Q_SLOTS:
    void nameIsRememberedForItsContent()
    {
        VideoNames names;
        names.remember(video(1), QStringLiteral("one"));
        names.remember(video(2), QStringLiteral("two"));
        QCOMPARE(names.nameOf(video(1)), QStringLiteral("one"));
        QCOMPARE(names.nameOf(video(3)), QString());
    }

    void lastNameOfTheSameContentWins()
    {
        VideoNames names;
        names.remember(video(1), QStringLiteral("old"));
        names.remember(video(1), QStringLiteral("new"));
        QCOMPARE(names.nameOf(video(1)), QStringLiteral("new"));
    }

    void theOldestAreForgotten()
    {
        VideoNames names;
        for (quint64 size = 0; size < 1000; ++size)
            names.remember(video(size), QString::number(size));
        QCOMPARE(names.nameOf(video(0)), QString());
        QCOMPARE(names.nameOf(video(999)), QStringLiteral("999"));
    }
};

PLOVENDIX_TEST(VideoNamesTest)
#include "VideoNamesTest.moc"
