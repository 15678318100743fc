#include <app/SecretFileQuestion.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

/// The question whether secrets may lie in a file.
class SecretFileQuestionTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<SecretFileQuestion> m_question;
    QList<bool> m_answers;

    void ask()
    {
        m_question->ask([this](bool agreed) { m_answers += agreed; });
    }
    static QList<QMessageBox *> boxes()
    {
        QList<QMessageBox *> found;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *box = qobject_cast<QMessageBox *>(widget))
                found += box;
        }
        return found;
    }
    static void press(const QString &title)
    {
        QCOMPARE(boxes().size(), 1);
        for (QAbstractButton *button : boxes().constFirst()->buttons()) {
            if (button->text() == title)
                return button->click();
        }
        QFAIL(qPrintable(title));
    }

private Q_SLOTS:
    void init()
    {
        m_answers.clear();
        m_question = std::make_unique<SecretFileQuestion>();
    }
    void cleanup()
    {
        m_question.reset();
        qDeleteAll(boxes());
    }

    void nothingWaitsForTheAnswer()
    {
        ask();
        QCOMPARE(boxes().size(), 1);
        QVERIFY(boxes().constFirst()->isVisible());
        QCOMPARE(boxes().constFirst()->textFormat(), Qt::PlainText);
        QCOMPARE(m_answers, QList<bool>());
        press(u"Do Not Keep"_s);
        QTRY_COMPARE(m_answers, QList<bool>{false});
    }

    void oneQuestionForAllThatComeMeanwhile()
    {
        for (int time = 0; time < 3; ++time)
            ask();
        press(u"Keep in a File"_s);
        QTRY_COMPARE(m_answers, (QList<bool>{true, true, true}));
    }

    void yesIsRememberedAndNoIsNot()
    {
        ask();
        press(u"Do Not Keep"_s);
        QTRY_COMPARE(m_answers.size(), 1);
        ask();
        press(u"Keep in a File"_s);
        QTRY_COMPARE(m_answers, (QList<bool>{false, true}));
        ask();
        QCOMPARE(m_answers, (QList<bool>{false, true, true}));
        QCOMPARE(boxes().size(), 0);
    }

    void escapeIsANo()
    {
        ask();
        QTest::keyClick(boxes().constFirst(), Qt::Key_Escape);
        QTRY_COMPARE(m_answers, QList<bool>{false});
    }

    void goingWithItsWindowIsANo()
    {
        auto window = std::make_unique<QWidget>();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        ask();
        window.reset();
        QCOMPARE(m_answers, QList<bool>{false});
    }

    void noAnswerComesAfterDestruction()
    {
        ask();
        m_question.reset();
        press(u"Keep in a File"_s);
        QTRY_COMPARE(boxes().size(), 0);
        QCOMPARE(m_answers, QList<bool>());
    }
};

PLOVENDIX_GUI_TEST(SecretFileQuestionTest)
#include "SecretFileQuestionTest.moc"
