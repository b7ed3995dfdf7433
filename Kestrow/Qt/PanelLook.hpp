// The panel's colours, fonts and measures, and the few shapes that its controls are drawn with.
#pragma once

#include "Kestrow/PanelMeasure.hpp"
#include "Kestrow/Platform/Canvas.hpp"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <QWidget>

namespace kestrow::qt::panel_look {

// Dark like the pill, whose amber marks what is chosen.
inline const QColor background{24, 27, 36};
inline const QColor primaryText{238, 240, 245};
inline const QColor secondaryText{163, 169, 184};
inline const QColor accent{255, 182, 39};
inline const QColor onAccent{28, 20, 2};
inline const QColor line{255, 255, 255, 28};
inline const QColor control{255, 255, 255, 24};
inline const QColor controlHovered{255, 255, 255, 36};
inline const QColor controlPressed{255, 255, 255, 14};
inline const QColor rowHovered{255, 255, 255, 15};
inline const QColor popUpBackground{38, 42, 54};
inline constexpr float disabledOpacity = 0.5F;

inline constexpr int contentWidth = static_cast<int>(PanelMeasure::contentWidth);
inline constexpr int inset = static_cast<int>(PanelMeasure::inset);
inline constexpr int cornerRadius = static_cast<int>(PanelMeasure::cornerRadius);
inline constexpr int controlRadius = 6;
inline constexpr int indicator = 14;  // a radio button's or check box's mark
inline constexpr int titleIndent = static_cast<int>(PanelMeasure::titleIndent);
inline constexpr int controlHeight = 26;
// How far a row's highlight reaches beyond its text.
inline constexpr int rowOutsetX = 8;
inline constexpr int rowOutsetY = 3;

// The interface font. Sizes are in points of the program, which are Qt's pixels.
inline constexpr int regularSize = 13;
inline constexpr int smallSize = 11;
inline constexpr int sectionTitleSize =
    smallSize + static_cast<int>(PanelMeasure::sectionTitleGrowth);
QFont font(int size, FontWeight weight = FontWeight::regular);

QPalette palette();

// A rounded rectangle for the state that the control is in.
void drawControl(QPainter& painter, const QRectF& rect, bool hovered, bool pressed);
// The highlight of a row under the pointer.
void drawRow(QPainter& painter, const QRect& rect);
// Shows where the keyboard is. Drawn just inside the rectangle.
void drawFocusRing(QPainter& painter, const QRectF& rect);
// Whether the widget has the keyboard, and the user is using it.
bool showsFocus(const QWidget& widget);

void drawRadioMark(QPainter& painter, const QRectF& rect, bool isOn, bool hovered);
void drawCheckMark(QPainter& painter, const QRectF& rect, bool isOn, bool hovered);
// The two small arrows of a pop-up button, centred.
void drawPopUpArrows(QPainter& painter, QPointF centre);

}  // namespace kestrow::qt::panel_look
