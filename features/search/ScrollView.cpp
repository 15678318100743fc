#include "ScrollView.h"

ScrollView::ScrollView(QWidget *parent) : QWidget(parent)
{
    // The insets have the same background as the table.
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}
