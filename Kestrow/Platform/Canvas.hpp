// The port for drawing. Coordinates are points with the origin at the bottom left, y upwards;
// colours are sRGB. Whoever draws makes no assumption about the toolkit behind it.
#pragma once

#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/Geometry.hpp"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

struct Color {
  RGB rgb;
  double alpha = 1;
  bool operator==(const Color&) const = default;
};

// A path of lines and circular arcs.
struct Path {
  struct MoveTo {
    Point to;
    bool operator==(const MoveTo&) const = default;
  };
  struct LineTo {
    Point to;
    bool operator==(const LineTo&) const = default;
  };
  // From `startAngle` to `endAngle`, in degrees, counter-clockwise from the x axis as y points up;
  // a line joins it to the point before.
  struct Arc {
    Point centre;
    double radius = 0;
    double startAngle = 0;
    double endAngle = 0;
    bool clockwise = false;
    bool operator==(const Arc&) const = default;
  };
  struct Close {
    bool operator==(const Close&) const = default;
  };
  using Step = std::variant<MoveTo, LineTo, Arc, Close>;

  std::vector<Step> steps;

  static Path rect(const Rect& rect);
  static Path roundedRect(const Rect& rect, double radius);

  bool operator==(const Path&) const = default;
};

enum class FontWeight { regular, medium, semibold, bold, heavy };

// The system's interface font.
struct Font {
  double size = 13;  // points
  FontWeight weight = FontWeight::regular;
  bool monospacedDigits = false;  // every digit takes the same width
  bool operator==(const Font&) const = default;
};

// A soft light behind the text: a blur without offset.
struct Glow {
  Color color;
  double radius = 0;
  bool operator==(const Glow&) const = default;
};

struct TextAttributes {
  Font font;
  Color color;
  double kerning = 0;  // added after every character
  std::optional<Glow> glow;
  bool operator==(const TextAttributes&) const = default;
};

struct TextRun {
  std::string text;  // UTF-8, plain, without line breaks
  TextAttributes attributes;
  bool operator==(const TextRun&) const = default;
};

// One line of text in runs.
using AttributedText = std::vector<TextRun>;

// The point of a line's box by which it is placed, in parts of its width and height from the bottom
// left.
struct Anchor {
  double x = 0;
  double y = 0;

  // The bottom left of a box of this size that is placed so.
  Point origin(Point at, Size size) const {
    return {at.x - x * size.width, at.y - y * size.height};
  }
};

class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;
  // The typographic width and height of the line.
  virtual Size measure(const AttributedText& text) = 0;
};

class Canvas {
 public:
  virtual ~Canvas() = default;

  virtual void fill(const Path& path, const Color& color) = 0;

  // From `start` to `end` along the angle: 0 is left to right, 90 bottom to top, -90 top to bottom.
  virtual void fillGradient(const Path& path, const Color& start, const Color& end,
                            double angleDegrees) = 0;

  virtual void stroke(const Path& path, const Color& color, double lineWidth) = 0;

  // The line's box is what the system's measurer says. It is placed by its anchor, so that nobody
  // has to measure a line in order to draw it in a middle.
  virtual void drawText(const AttributedText& text, Point at, Anchor anchor) = 0;

  // Until the matching popClip, what is drawn stays inside the path. Clips nest.
  virtual void pushClip(const Path& path) = 0;
  virtual void popClip() = 0;
};

// A clip for as long as it is in scope.
class ClipScope {
 public:
  ClipScope(Canvas& canvas, const Path& path) : canvas_(canvas) { canvas_.pushClip(path); }
  ~ClipScope() { canvas_.popClip(); }
  ClipScope(const ClipScope&) = delete;
  ClipScope& operator=(const ClipScope&) = delete;

 private:
  Canvas& canvas_;
};

}  // namespace kestrow
