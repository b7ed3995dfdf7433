// The pill in pictures: fixed contents in every form, drawn as the program draws them.
#pragma once

#include <QImage>
#include <QString>

#include <string>
#include <vector>

namespace kestrow::gallery {

// One strip of pictures for each status: a column for each theme; rows for each layout, emphasis
// and variant.
std::vector<std::string> stripNames();
QImage strip(const std::string& name, double scale);
QString stripFile(const std::string& name, double scale);  // "live@2x.png"

// A choice of it with captions, to look at.
QImage contactSheet(double scale);

struct Difference {
  int pixels = 0;  // how many differ visibly
  QImage picture;  // where, bright on dark; null when the sizes differ
};

// Pixels differ visibly when a channel is further apart than the tolerance.
Difference difference(const QImage& one, const QImage& other, int tolerance);

}  // namespace kestrow::gallery
