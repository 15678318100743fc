#include <features/updates/ReleaseNotes.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class ReleaseNotesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void markupBecomesText_data()
    {
        QTest::addColumn<QString>("notes");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *name, const QString &notes, const QString &shown) {
            QTest::newRow(name) << notes << shown;
        };
        row("plain text", u"One\n  - two < three & four"_s, u"One\n  - two < three & four"_s);
        row("entities in plain text stay", u"Write &amp; for &"_s, u"Write &amp; for &"_s);
        row("paragraphs", u"<p>One\n two</p>\n<p>Three</p>"_s, u"One two\n\nThree"_s);
        row("list", u"<h2>New</h2><ul><li>One</li>\n<li>Two</li></ul>End"_s, u"New\n\n• One\n• Two\n\nEnd"_s);
        row("sections", u"<section>One</section><section>Two</section><article>Three</article>"_s,
            u"One\n\nTwo\n\nThree"_s);
        row("a less-than sign in markup", u"<p>Works for 2 < 3 films, and <5 more</p>"_s,
            u"Works for 2 < 3 films, and <5 more"_s);
        row("references to no sign", u"<b>a</b>&#0;b&#xD800;c"_s, u"a&#0;b&#xD800;c"_s);
        row("line break", u"One<br/>two<BR>three"_s, u"One\ntwo\nthree"_s);
        row("entities", u"<p>a &lt;b&gt; &amp;amp; &#169; &#x2014; &quot;&unknown;</p>"_s,
            u"a <b> &amp; © — \"&unknown;"_s);
        row("script and style", u"<p>One</p><script>alert('<p>')</script><style>p{}</style>Two"_s,
            u"One\n\nTwo"_s);
        row("an unended script", u"<b>One</b><script>alert(1)"_s, u"One"_s);
        row("pictures and frames", u"A<img src=\"https://t.example/p.png\"><iframe src='x'></iframe>B"_s,
            u"AB"_s);
        row("a comment", u"<b>A</b><!-- <p>no</p> -->B"_s, u"AB"_s);
        row("a tag that is made by an entity", u"<b>x</b>&lt;script&gt;"_s, u"x<script>"_s);
        row("nothing", QString(), QString());
        row("only markup", u"<p></p>"_s, QString());
    }
    void markupBecomesText()
    {
        QFETCH(const QString, notes);
        QFETCH(const QString, shown);
        QCOMPARE(plainReleaseNotes(notes), shown);
    }

    void controlsAndTurnsOfDirectionGo()
    {
        QCOMPARE(plainReleaseNotes(u"a\u202eb\u2066c\x1b[31md\x07\te"_s), u"abc[31md\te"_s);
        QCOMPARE(plainReleaseNotes(u"<b>a</b>&#8238;b&#0;c&#xD800;"_s), u"ab&#0;c&#xD800;"_s);
    }

    void veryLongNotesEnd()
    {
        const QString shown = plainReleaseNotes(QString(100'000, u'x'));
        QCOMPARE(shown.size(), 20'001);
        QVERIFY(shown.endsWith(u'…'));
    }
};

PLOVENDIX_TEST(ReleaseNotesTest)
#include "ReleaseNotesTest.moc"
