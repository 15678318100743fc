#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// The program with nobody at the keyboard, as an executable.
class UnattendedTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;

private Q_SLOTS:
    /// A person who has had five subtitles is asked for a donation; a machine would wait for ever.
    void noPromptComesInFrontOfItsDownload()
    {
        const QString settings = m_sandbox.writeFile(u"xdg_config_home/Quorvane/Plovendix.conf"_s,
                                                     "[General]\ndonationDeliveries=5\n");
        const QString sample = u"Harbour.Lights.2019.1080p.BluRay.x264"_s;
        const QString video = m_sandbox.path(u"videos/"_s + sample + u".mkv"_s);
        QVERIFY(QDir().mkpath(m_sandbox.path(u"videos"_s)));
        QVERIFY(QFile::copy(Bundle::main().folder() + u"/sample/"_s + sample + u".mkv"_s, video));

        QProcess drive;
        drive.setProcessChannelMode(QProcess::MergedChannels);
        drive.start(QStringLiteral(PLOVENDIX_DRIVE), {video, m_sandbox.path(u"picture.png"_s)});
        QVERIFY2(drive.waitForFinished(90'000), qPrintable(drive.errorString()));
        QVERIFY2(drive.exitCode() == 0, drive.readAll().constData());
        QVERIFY(QFile::exists(m_sandbox.path(u"videos/"_s + sample + u".eng.srt"_s)));

        QFile stored(settings);
        QVERIFY(stored.open(QIODevice::ReadOnly));
        const QByteArray text = stored.readAll();
        QVERIFY2(text.contains("donationDeliveries=5") && !text.contains("donationLastAsked"),
                 text.constData());
    }
};

PLOVENDIX_TEST(UnattendedTest)
#include "UnattendedTest.moc"
