// Plain text in lines that break between words, and inside a word that is too long for one.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QString>

namespace kestrow::qt {

// UTF-8 from anywhere as text for one paragraph; bytes that are not UTF-8 become U+FFFD.
QString plainText(const std::string& utf8);

namespace wrapped_text {

// Whole points that the text takes at this width.
int height(const QString& text, const QFont& font, int width);

// In the painter's pen, from the top left corner down.
void draw(QPainter& painter, const QString& text, const QFont& font, QPointF topLeft, int width);

}  // namespace wrapped_text
}  // namespace kestrow::qt
