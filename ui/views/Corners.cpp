#include "Corners.h"

Corners Corners::flipped() const
{
    Corners mirrored;
    if (contains(topLeft))
        mirrored.insert(bottomLeft);
    if (contains(bottomLeft))
        mirrored.insert(topLeft);
    if (contains(topRight))
        mirrored.insert(bottomRight);
    if (contains(bottomRight))
        mirrored.insert(topRight);
    return mirrored;
}
