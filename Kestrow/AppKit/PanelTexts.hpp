// The panel's texts. All of them wrap at a width and none can be selected: a click on one must not
// take the keyboard from the controls.
#pragma once

#include "Kestrow/AppKit/PanelItem.hpp"

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

namespace kestrow::appkit {

// A wrapping label in the default font.
NSTextField* _Nonnull makeWrappingLabel(double width);

// Small and in the secondary colour.
NSTextField* _Nonnull makeSecondaryLabel(double width);

// Sets the text where it differs, so that nothing is laid out for nothing.
void setText(NSTextField* _Nonnull label, const std::string& text);

// A column that starts at the left.
NSStackView* _Nonnull makeColumn();

class HeaderItem final : public PanelItem {
 public:
  HeaderItem();
  NSArray<NSView*>* _Nonnull views() override { return @[ label_ ]; }
  void apply(const PanelNode& node) override;

 private:
  NSTextField* _Nonnull label_;
};

class SectionTitleItem final : public PanelItem {
 public:
  SectionTitleItem();
  NSArray<NSView*>* _Nonnull views() override { return @[ label_ ]; }
  void apply(const PanelNode& node) override;

 private:
  NSTextField* _Nonnull label_;
};

class LabelItem final : public PanelItem {
 public:
  LabelItem();
  NSArray<NSView*>* _Nonnull views() override { return @[ label_ ]; }
  void apply(const PanelNode& node) override;

 private:
  NSTextField* _Nonnull label_;
};

// A label for each line.
class LinesItem final : public PanelItem {
 public:
  LinesItem();
  NSArray<NSView*>* _Nonnull views() override { return @[ stack_ ]; }
  void apply(const PanelNode& node) override;

 private:
  NSStackView* _Nonnull stack_;
  std::vector<std::string> lines_;  // as shown
};

}  // namespace kestrow::appkit
