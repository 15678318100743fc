#pragma once
#include <QUrl>

/// A window's content controller that takes dropped files, as the drop target sees it.
class DroppedFileReceiver
{
public:
    virtual ~DroppedFileReceiver() = default;
    virtual void searchForDroppedFile(const QUrl &url) = 0;
};
