#include "ScrollView.h"

ScrollView::ScrollView(QWidget *parent) : QWidget(parent)
{
    // What the insets leave free shows the same ground as the table.
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}
