// Draws the pill: the capsule or the two wings beside a camera housing, the texts, and where the
// status dot goes. Knows nothing of windows; a surface shows it.
#pragma once

#include "Kestrow/PillEmphasis.hpp"
#include "Kestrow/Platform/Canvas.hpp"
#include "Kestrow/Platform/Desktop.hpp"
#include "Kestrow/Platform/PillSurface.hpp"
#include "KestrowCore/Customisation.hpp"
#include "KestrowCore/PillComposer.hpp"
#include "KestrowCore/PillContent.hpp"
#include "KestrowCore/ScreenGeometry.hpp"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrow {

// Main thread only. The desktop and the shown surface outlive the view's use of them: a surface
// that goes is taken back with setSurface(nullptr) first.
class PillView final : public PillSurfaceClient {
 public:
  // Bytes of one text that are laid out, more than fits the widest screen. Names come from the
  // service, and measuring one of megabytes would hold up the program.
  static constexpr std::size_t longestText = 2000;

  struct Palette {
    static constexpr RGB navy{14 / 255.0, 18 / 255.0, 32 / 255.0};
    static constexpr RGB black{0, 0, 0};
    static constexpr RGB white{1, 1, 1};
    static constexpr RGB amber{255 / 255.0, 182 / 255.0, 39 / 255.0};
    static constexpr RGB floodlight{255 / 255.0, 210 / 255.0, 63 / 255.0};
    static constexpr RGB ball{228 / 255.0, 34 / 255.0, 63 / 255.0};
    static constexpr RGB grey{0.55, 0.55, 0.55};
  };

  struct Style {
    TextAttributes attributes;
    bool isFlashing = false;  // has a highlight behind it
    bool operator==(const Style&) const = default;
  };

  PillView(PillContent content, Desktop& desktop);
  PillView(const PillView&) = delete;
  PillView& operator=(const PillView&) = delete;
  ~PillView() override = default;

  // What happens on a click; may be empty.
  std::function<void()> onClick;

  const PillContent& content() const { return content_; }
  const std::optional<PillLayout>& layout() const { return layout_; }
  const TeamTheme& theme() const { return theme_; }
  PillEmphasis emphasis() const { return emphasis_; }

  void setContent(PillContent content);
  void setTheme(const TeamTheme& theme);
  void setEmphasis(PillEmphasis emphasis);
  // In the view's own coordinates.
  void setLayout(const std::optional<PillLayout>& layout);

  // Where the view is shown; none hides nothing by itself.
  void setSurface(PillSurface* surface);

  // The widths that layout and drawing go by. Not to outlive the view.
  MeasureText measure() const;

  static TextAttributes attributes(PillRole role, const Color& color,
                                   const std::optional<Color>& glow);
  Style style(PillRole role) const;

  // The dot in the view's coordinates; none when the content has none or there is no layout.
  std::optional<DotAppearance> dot() const;

  // PillSurfaceClient. A scale of 0 stands for "not on a screen": drawn as on a fine one.
  void draw(Canvas& canvas, const Rect& bounds, double scale) override;
  void click() override;
  std::string accessibilityLabel() const override;

 private:
  // A region of the layout with what was laid out in it.
  struct Region {
    Rect rect;
    std::vector<PillElement> elements;
  };

  // What is drawn on: `scale` pixels for a point, counted from the corner of the bounds, which a
  // window always has between pixels.
  struct Pixels {
    Rect bounds;
    double scale = 1;
  };

  // The rectangle with its edges between pixels.
  static Path crisp(const Rect& rect, const Pixels& pixels);

  void changed();
  void placeDot();
  void arrange();
  Region region(PillComposer::Part part, const Rect& rect) const;
  void drawBackground(Canvas& canvas, const Pixels& pixels) const;
  void drawElement(Canvas& canvas, const PillElement& element, const Rect& rect,
                   const Pixels& pixels) const;
  void drawText(Canvas& canvas, const PillElement& element, const PillElement::Text& text, double x,
                double mid) const;
  AttributedText attributed(const PillElement::Text& text, const TextAttributes& attributes) const;

  PillContent content_;
  std::optional<PillLayout> layout_;
  TeamTheme theme_ = TeamTheme::standard();
  PillEmphasis emphasis_ = PillEmphasis::none;

  Desktop& desktop_;
  PillSurface* surface_ = nullptr;
  std::vector<Region> regions_;
  // The widths of this content's texts that were asked for: layout asks for each many times, and
  // laying a text out is what takes its time.
  mutable std::map<std::pair<PillRole, std::string>, double> widths_;
  Subscription reduceMotionChanged_;
};

}  // namespace kestrow
