#include "Kestrow/AppKit/PanelScroll.hpp"

#include <gtest/gtest.h>

#include "Kestrow/AppKit/PanelItem.hpp"
#include "Kestrow/AppKit/PanelTexts.hpp"
#import "Kestrow/AppKit/PanelWindow.hpp"

namespace kestrow::appkit {
namespace {

static_assert(PanelMeasure::width == 340);
static_assert(PanelMeasure::inset == 16);
static_assert(PanelMeasure::contentWidth == 308);
static_assert(PanelMeasure::rowSpacing == 8);
static_assert(PanelMeasure::titleIndent == 20);
static_assert(PanelMeasure::cornerRadius == 12);

class PanelScrollOnAMac : public testing::Test {
 protected:
  void show(double height) {
    background_.frame = NSMakeRect(0, 0, 340, height);
    [background_ layoutSubtreeIfNeeded];
  }
  void addLines(int count) {
    for (int i = 0; i < count; ++i) {
      NSTextField* line = makeWrappingLabel(PanelMeasure::contentWidth);
      setText(line, "18.4 six, Dhoni (CSK)");
      [stack_ insertArrangedSubview:line atIndex:0];
    }
  }

  NSStackView* stack_ = makeColumn();
  NSScrollView* scroll_ = makePanelScroll(stack_);
  NSView* background_ = makePanelBackground(scroll_);
};

TEST_F(PanelScrollOnAMac, BlursWhatIsBehindTheWindowAlsoWhileAnotherProgramIsActive) {
  ASSERT_TRUE([background_ isKindOfClass:NSVisualEffectView.class]);
  auto* effect = static_cast<NSVisualEffectView*>(background_);
  EXPECT_EQ(effect.material, NSVisualEffectMaterialPopover);
  EXPECT_EQ(effect.state, NSVisualEffectStateActive);
  EXPECT_EQ(effect.blendingMode, NSVisualEffectBlendingModeBehindWindow);
  EXPECT_EQ(effect.layer.cornerRadius, 12);
  EXPECT_TRUE(effect.layer.masksToBounds);
  EXPECT_FALSE(scroll_.drawsBackground);
}

TEST_F(PanelScrollOnAMac, FillsTheWindowAndStartsAtItsTop) {
  addLines(1);
  show(400);
  EXPECT_EQ(scroll_.frame.size.height, 400);
  NSView* document = scroll_.documentView;
  EXPECT_TRUE(document.flipped);
  EXPECT_EQ(document.frame.size.width, 340);
  EXPECT_EQ(document.frame.origin.y, 0);
  NSView* line = stack_.arrangedSubviews[0];
  const NSRect frame = [line convertRect:line.bounds toView:document];
  EXPECT_NEAR(frame.origin.x, 16, 2);  // text has a margin of its own
  EXPECT_NEAR(frame.origin.y, 16, 1);
}

TEST_F(PanelScrollOnAMac, KeepsWhatIsInSightWhenContentComesInAboveIt) {
  NSPanel* panel = makePanelWindow();
  panel.contentView = background_;
  addLines(100);
  [panel setFrame:NSMakeRect(0, 0, 340, 200) display:NO];
  [background_ layoutSubtreeIfNeeded];
  NSClipView* clip = scroll_.contentView;
  [clip scrollToPoint:NSMakePoint(0, 500)];
  NSView* document = scroll_.documentView;
  const double before = document.frame.size.height;

  const ScrollPlace place(scroll_, stack_);
  addLines(10);
  [document layoutSubtreeIfNeeded];
  place.restore();
  const double grown = document.frame.size.height - before;
  EXPECT_GT(grown, 100);
  EXPECT_NEAR(clip.bounds.origin.y, 500 + grown, 1);
}

}  // namespace
}  // namespace kestrow::appkit
