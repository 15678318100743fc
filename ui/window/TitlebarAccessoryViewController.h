#pragma once
#include "ViewController.h"

/// The end of the title bar for an accessory. The numbers are those of the layout attributes.
enum class LayoutAttribute
{
    Leading = 5,
    Trailing = 6
};

/// A controller whose view stands in a window's title bar.
class TitlebarAccessoryViewController : public ViewController
{
public:
    LayoutAttribute layoutAttribute() const { return m_layoutAttribute; }
    void setLayoutAttribute(LayoutAttribute attribute) { m_layoutAttribute = attribute; }

private:
    LayoutAttribute m_layoutAttribute = LayoutAttribute::Trailing;
};
