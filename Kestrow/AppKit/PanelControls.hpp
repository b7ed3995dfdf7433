// The panel's controls. Each reports what the user did under the id of the node that it shows.
#pragma once

#import "Kestrow/AppKit/Action.hpp"
#include "Kestrow/AppKit/PanelItem.hpp"

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

namespace kestrow::appkit {

class RadioItem final : public PanelItem {
 public:
  explicit RadioItem(PanelSurfaceClient& client);
  NSArray<NSView*>* _Nonnull views() override { return @[ button_, detailRow_ ]; }
  void apply(const PanelNode& node) override;

 private:
  std::string id_;
  KestrowAction* _Nonnull action_;  // controls do not keep their targets
  NSButton* _Nonnull button_;
  NSTextField* _Nonnull detail_;
  NSStackView* _Nonnull detailRow_;
};

class CheckBoxItem final : public PanelItem {
 public:
  explicit CheckBoxItem(PanelSurfaceClient& client);
  NSArray<NSView*>* _Nonnull views() override { return @[ row_, detail_ ]; }
  void apply(const PanelNode& node) override;

 private:
  std::string id_;
  KestrowAction* _Nonnull action_;
  NSButton* _Nonnull button_;
  NSTextField* _Nonnull status_;
  NSTextField* _Nonnull detail_;
  NSStackView* _Nonnull row_;
};

class PopUpItem final : public PanelItem {
 public:
  explicit PopUpItem(PanelSurfaceClient& client);
  NSArray<NSView*>* _Nonnull views() override { return @[ row_ ]; }
  void apply(const PanelNode& node) override;

 private:
  std::string id_;
  KestrowAction* _Nonnull action_;
  NSTextField* _Nonnull label_;
  NSPopUpButton* _Nonnull button_;
  NSStackView* _Nonnull row_;
  std::vector<std::string> items_;  // as shown
};

class ButtonItem final : public PanelItem {
 public:
  explicit ButtonItem(PanelSurfaceClient& client);
  NSArray<NSView*>* _Nonnull views() override { return @[ button_ ]; }
  void apply(const PanelNode& node) override;

 private:
  std::string id_;
  KestrowAction* _Nonnull action_;
  NSButton* _Nonnull button_;
};

class SeparatorItem final : public PanelItem {
 public:
  SeparatorItem();
  NSArray<NSView*>* _Nonnull views() override { return @[ box_ ]; }
  void apply(const PanelNode& /*node*/) override {}

 private:
  NSBox* _Nonnull box_;
};

}  // namespace kestrow::appkit
