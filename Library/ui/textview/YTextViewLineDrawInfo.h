// YTextViewLineDrawInfo.h: one straight line to draw.
#pragma once

// In pixels. A column may begin between two pixels: x is cut to a whole one only when drawn.
struct YTextViewLineDrawInfo
{
    double startX;
    int startY;
    double endX;
    int endY;

    bool operator==(const YTextViewLineDrawInfo&) const = default;
};
