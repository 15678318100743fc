#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

class MainWindowController;
class QWidget;

/// Operates the program on a machine without a person: waits for the results, downloads the first, accepts
/// the save sheet's suggestion, takes a picture of the screen, prints what happened, and quits with 0. Quits
/// with 1 and a line with the reason when a step fails.
class Drive final : public QObject
{
    Q_OBJECT

public:
    Drive(MainWindowController &mainWindow, const QString &picturePath);

private:
    enum class Step
    {
        AwaitResults,
        AwaitPoster,
        AwaitSheet,
        AwaitSaved
    };

    void look();
    void lookForResults();
    void lookForPoster();
    void lookForSheet();
    void lookForSavedFile();
    void go(Step next);
    bool takePicture() const;
    void giveUp(const QString &reason);

    MainWindowController &m_mainWindow;
    const QString m_picturePath;
    Step m_step = Step::AwaitResults;
    QTimer m_timer;
    QElapsedTimer m_inStep;
    QString m_savedPath;
};
