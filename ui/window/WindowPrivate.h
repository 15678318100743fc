#pragma once
#include "Window.h"
#include <ui/system/WindowFrame.h>

#include <QPointer>

#include <optional>

class EdgeGrip;
class FrameOverlay;

/// A window's parts and their layout. Created and destroyed with its window.
class ui::Window::Private final
{
public:
    static constexpr QSize ContentMinimum{480, 360};

    explicit Private(ui::Window *window) : q(window) {}

    void build();
    void adoptContent(const std::shared_ptr<ViewController> &newController);
    void releaseContent();

    QRect frameRect() const;
    QRect contentRect() const;
    QSize windowSizeFor(const QSize &contentSize) const;
    void applySizeLimits();
    void layOut();
    /// Reads the window's situation again and applies the matching frame.
    void refreshFrame();
    /// Follows the native window, which is created late and may be recreated.
    void watchHandle();
    /// Puts the title bar's controls after the content in the Tab order.
    void orderFocus();
    void toggleZoom();
    void showMenu(const QPoint &globalPosition);

    ui::Window *q;
    TitleBar *titleBar = nullptr;
    FrameOverlay *overlay = nullptr;
    EdgeGrip *grip = nullptr;
    QAction *closeAction = nullptr;
    std::shared_ptr<ViewController> controller;
    QPointer<QWidget> contentView;
    bool fullSizeContentView = false;
    bool resizable = true;
    bool closing = false; // the close event was accepted, but the window is not hidden yet
    QSize contentMinimum = ContentMinimum;
    QSize chosenContentSize;
    WindowFrame::Look look;

private:
    void keepFrameInPlace(const QRect &geometry);
    void publishFrame();

    std::optional<QRect> m_geometryToReturnTo; // while maximised, full screen or tiled; invalid when unknown
    int m_normalMargin = 0; // the margin that the geometry outside of maximised and tiled states includes
};
