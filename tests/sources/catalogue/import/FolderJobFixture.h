#pragma once
#include "ImportFixture.h"
#include "UnprivilegedUser.h"

#include <sources/catalogue/import/FolderImportJob.h>

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

/// Imports of a folder on the test's own thread, into a catalogue of the test function's own.
class FolderJobFixture final
{
public:
    static constexpr std::chrono::seconds WaitLimit{30};

    explicit FolderJobFixture(const Sandbox &sandbox)
        : m_sandbox(sandbox),
          m_import(sandbox, QString::fromLatin1(QTest::currentTestFunction()) +
                                QString::fromLatin1(QTest::currentDataTag()))
    {
    }

    const ImportFixture &import() const { return m_import; }
    QString path() const { return m_import.path(); }
    QString folder() const { return m_import.folder(); }

    std::unique_ptr<FolderImportJob> makeJob(std::chrono::milliseconds writerTimeout = WaitLimit) const
    {
        return std::make_unique<FolderImportJob>(path(), folder(), writerTimeout);
    }
    FolderImportState run() const
    {
        return makeJob()->run([](const FolderImportState &) {});
    }
    /// Runs it, and does `what` once that many files were looked at.
    FolderImportState runUntil(qint64 files, const std::function<void(FolderImportJob &)> &what) const
    {
        const auto job = makeJob();
        bool isDone = false;
        return job->run([&](const FolderImportState &state) {
            if (isDone || state.phase != FolderImportState::Phase::Reading || state.files < files)
                return;
            isDone = true;
            what(*job);
        });
    }
    /// Runs it as somebody who may not read this, which is `rights` again afterwards.
    FolderImportState runWithout(const QString &file, mode_t rights) const
    {
        for (const QString &place : {m_sandbox.path({}), QFileInfo(path()).path(), folder()})
            change(place, 0777);
        change(file, 0);
        FolderImportState state;
        {
            const UnprivilegedUser user;
            state = run();
        }
        change(file, rights);
        return state;
    }

    void writeEpisodes(int count, int first = 0) const
    {
        for (int i = first; i < count; ++i)
            m_import.write(QStringLiteral("Harbour.Lights.S01E%1.en.srt").arg(i + 1, 2, 10, QLatin1Char('0')),
                           ImportFixture::cue(QString::number(i)));
    }

private:
    static void change(const QString &file, mode_t rights)
    {
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), rights), 0);
    }

    const Sandbox &m_sandbox;
    ImportFixture m_import;
};
