#include "SearchField.h"

namespace
{
constexpr int MagnifierWidth = 28;
constexpr int CancelButtonWidth = 30;
constexpr int LongestText = 4096; // characters; file names end at 255 bytes
} // namespace

SearchField::SearchField(QWidget *parent) : QLineEdit(parent)
{
    setTextMargins(MagnifierWidth, 0, CancelButtonWidth, 0);
    setMaxLength(LongestText);
}
