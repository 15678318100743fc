#pragma once
#include <ui/window/WindowController.h>

/// The About window. It is made by whoever opens it first and kept for the next time; `showWindow` brings it
/// up. How it looks is the business of its content. Main thread only.
class AboutWindowController final : public WindowController
{
    Q_OBJECT

public:
    AboutWindowController();

    void loadWindow() override;
};

/// Tells the storyboard how to make `AboutViewController`.
void registerAboutScene();
