#include "core.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
