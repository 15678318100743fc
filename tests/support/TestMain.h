#pragma once
#include <QTest>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#else
#include <QCoreApplication>
#endif

/// Registers a test class of a room's executable, whose first argument chooses the class to run.
class RegisteredTest final
{
public:
    using Run = int (*)(int argc, char **argv);
    /// `name` and `run` outlive the program's main function.
    RegisteredTest(const char *name, Run run);
};

/// Runs a test class under an application object of type `Application`, which its static `initMain` precedes.
template <class Application, class Test>
int runTest(int argc, char **argv)
{
    if constexpr (requires { Test::initMain(); })
        Test::initMain();
    const Application application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// Runs a test class without an application object.
template <class Test>
int runPlainTest(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// At the end of a test's source: the class runs with an event loop, with widgets, or without an application.
/// PLOVENDIX_TEST_FUNCTION takes a function that makes its application and test object itself.
#define PLOVENDIX_TEST(Test) PLOVENDIX_TEST_FUNCTION(Test, (runTest<QCoreApplication, Test>))
#define PLOVENDIX_GUI_TEST(Test) PLOVENDIX_TEST_FUNCTION(Test, (runTest<QApplication, Test>))
#define PLOVENDIX_PLAIN_TEST(Test) PLOVENDIX_TEST_FUNCTION(Test, runPlainTest<Test>)
#define PLOVENDIX_TEST_FUNCTION(Test, function) static const RegisteredTest registered##Test(#Test, function);
