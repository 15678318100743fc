#pragma once
#include <QUrl>

/// Takes dropped files for the drop target. A window's content controller implements it.
class DroppedFileReceiver
{
public:
    virtual ~DroppedFileReceiver() = default;
    virtual void searchForDroppedFile(const QUrl &url) = 0;
};
