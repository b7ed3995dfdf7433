// A canvas that writes down what is drawn on it, with text metrics that are the same everywhere.
#pragma once

#include "Kestrow/Platform/Canvas.hpp"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace kestrow {

// Every character is half the font's size wide, plus the kerning; a line is as high as one and a
// quarter of its largest font.
class FixedMeasurer : public TextMeasurer {
 public:
  static double characters(const std::string& text) {
    return static_cast<double>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
  }

  int linesMeasured = 0;

  Size measure(const AttributedText& text) override {
    ++linesMeasured;
    Size size;
    for (const auto& run : text) {
      const auto& attributes = run.attributes;
      size.width += characters(run.text) * (attributes.font.size * 0.5 + attributes.kerning);
      size.height = std::max(size.height, attributes.font.size * 1.25);
    }
    return size;
  }
};

struct Drawn {
  struct Fill {
    Path path;
    Color color;
    bool operator==(const Fill&) const = default;
  };
  struct Gradient {
    Path path;
    Color start;
    Color end;
    double angle = 0;
    bool operator==(const Gradient&) const = default;
  };
  struct Stroke {
    Path path;
    Color color;
    double lineWidth = 0;
    bool operator==(const Stroke&) const = default;
  };
  struct Text {
    AttributedText text;
    Point origin;
    bool operator==(const Text&) const = default;
  };
  struct PushClip {
    Path path;
    bool operator==(const PushClip&) const = default;
  };
  struct PopClip {
    bool operator==(const PopClip&) const = default;
  };
  using Call = std::variant<Fill, Gradient, Stroke, Text, PushClip, PopClip>;
};

class RecordingCanvas final : public Canvas {
 public:
  std::vector<Drawn::Call> calls;

  void fill(const Path& path, const Color& color) override {
    calls.emplace_back(Drawn::Fill{path, color});
  }
  void fillGradient(const Path& path, const Color& start, const Color& end,
                    double angleDegrees) override {
    calls.emplace_back(Drawn::Gradient{path, start, end, angleDegrees});
  }
  void stroke(const Path& path, const Color& color, double lineWidth) override {
    calls.emplace_back(Drawn::Stroke{path, color, lineWidth});
  }
  void drawText(const AttributedText& text, Point at, Anchor anchor) override {
    calls.emplace_back(Drawn::Text{text, anchor.origin(at, measurer_.measure(text))});
  }
  void pushClip(const Path& path) override { calls.emplace_back(Drawn::PushClip{path}); }
  void popClip() override { calls.emplace_back(Drawn::PopClip{}); }

  template <class T>
  std::vector<T> all() const {
    std::vector<T> found;
    for (const auto& call : calls) {
      if (const auto* one = std::get_if<T>(&call)) found.push_back(*one);
    }
    return found;
  }

 private:
  FixedMeasurer measurer_;
};

// What a failing test prints.
inline void PrintTo(const Point& point, std::ostream* out) {
  *out << '(' << point.x << ", " << point.y << ')';
}
inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << '(' << rect.x << ", " << rect.y << ", " << rect.width << " x " << rect.height << ')';
}
inline void PrintTo(const Color& color, std::ostream* out) {
  *out << "rgba(" << color.rgb.red << ' ' << color.rgb.green << ' ' << color.rgb.blue << ' '
       << color.alpha << ')';
}
inline void PrintTo(const Path& path, std::ostream* out) {
  for (const auto& step : path.steps) {
    if (const auto* move = std::get_if<Path::MoveTo>(&step)) {
      *out << " M";
      PrintTo(move->to, out);
    } else if (const auto* line = std::get_if<Path::LineTo>(&step)) {
      *out << " L";
      PrintTo(line->to, out);
    } else if (const auto* arc = std::get_if<Path::Arc>(&step)) {
      *out << " A";
      PrintTo(arc->centre, out);
      *out << 'r' << arc->radius << ' ' << arc->startAngle << "->" << arc->endAngle;
    } else {
      *out << " Z";
    }
  }
}
inline void PrintTo(const TextRun& run, std::ostream* out) {
  *out << '"' << run.text << "\" " << run.attributes.font.size << "pt w"
       << static_cast<int>(run.attributes.font.weight)
       << (run.attributes.font.monospacedDigits ? " mono " : " ") << "kern "
       << run.attributes.kerning << ' ';
  PrintTo(run.attributes.color, out);
  if (run.attributes.glow) {
    *out << " glow " << run.attributes.glow->radius << ' ';
    PrintTo(run.attributes.glow->color, out);
  }
}
inline void PrintTo(const Drawn::Call& call, std::ostream* out) {
  if (const auto* fill = std::get_if<Drawn::Fill>(&call)) {
    *out << "fill ";
    PrintTo(fill->color, out);
    PrintTo(fill->path, out);
  } else if (const auto* gradient = std::get_if<Drawn::Gradient>(&call)) {
    *out << "gradient " << gradient->angle << ' ';
    PrintTo(gradient->start, out);
    PrintTo(gradient->end, out);
    PrintTo(gradient->path, out);
  } else if (const auto* stroke = std::get_if<Drawn::Stroke>(&call)) {
    *out << "stroke " << stroke->lineWidth << ' ';
    PrintTo(stroke->color, out);
    PrintTo(stroke->path, out);
  } else if (const auto* text = std::get_if<Drawn::Text>(&call)) {
    *out << "text at ";
    PrintTo(text->origin, out);
    for (const auto& run : text->text) {
      *out << ' ';
      PrintTo(run, out);
    }
  } else if (const auto* clip = std::get_if<Drawn::PushClip>(&call)) {
    *out << "clip";
    PrintTo(clip->path, out);
  } else {
    *out << "unclip";
  }
}

// The call in words, numbers to six digits: equal for what would look equal.
template <class T>
std::string described(const T& value) {
  std::ostringstream out;
  PrintTo(value, &out);
  return out.str();
}

}  // namespace kestrow
