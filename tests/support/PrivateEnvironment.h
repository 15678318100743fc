#pragma once
#include <QTemporaryDir>

/// What a test process sees of the person who runs it and of the machine: a few variables by name, and empty
/// folders in the place of the home, of what is installed (applications and what they handle, above all) and
/// of the session. Made before the application object, which reads variables that scale and colour
/// everything. A Sandbox gives each test object a separate home within it.
class PrivateEnvironment final
{
public:
    PrivateEnvironment();

    /// Whether a test has started this process, which lives in the test's environment then.
    static bool isInherited();

private:
    QTemporaryDir m_folder;
};
