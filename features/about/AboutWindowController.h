#pragma once
#include <ui/window/WindowController.h>

/// The About window. The menu creates it on first use and keeps it; `showWindow` shows it. Its content
/// decides its look. Main thread only.
class AboutWindowController final : public WindowController
{
    Q_OBJECT

public:
    AboutWindowController();

    void loadWindow() override;
};

/// Registers `AboutViewController` with the storyboard.
void registerAboutScene();
