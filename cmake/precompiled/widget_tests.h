#include "widgets.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
