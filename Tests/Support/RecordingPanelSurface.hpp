// A panel without a window: what the controller shows and asks for can be read back.
#pragma once

#include "Kestrow/Platform/PanelSurface.hpp"

#include <memory>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kestrow {

// What became of one panel surface; stays after the surface has gone.
struct PanelSurfaceRecord {
  PanelSurfaceClient* client = nullptr;
  bool exists = true;
  PanelNode content;
  int contentsSet = 0;
  double fittingHeight = 500;
  std::vector<Rect> frames;
  bool isVisible = false;
  bool isKey = false;
  bool hasMonitors = false;
  std::vector<std::string_view> calls;  // those that open and close, in order

  // The node of this kind and id, wherever it is in the content; null when there is none.
  template <class Kind>
  const Kind* find(std::string_view id) const {
    return find<Kind>(content, id);
  }

 private:
  template <class Kind>
  static const Kind* find(const PanelNode& node, std::string_view id) {
    if (const auto* kind = std::get_if<Kind>(&node.kind); kind && node.id == id) return kind;
    if (const auto* box = std::get_if<PanelBox>(&node.kind)) {
      for (const auto& child : box->nodes) {
        if (const auto* found = find<Kind>(child, id)) return found;
      }
    }
    return nullptr;
  }
};

class RecordingPanelSurface final : public PanelSurface {
 public:
  explicit RecordingPanelSurface(std::shared_ptr<PanelSurfaceRecord> record)
      : record_(std::move(record)) {}
  RecordingPanelSurface(const RecordingPanelSurface&) = delete;
  RecordingPanelSurface& operator=(const RecordingPanelSurface&) = delete;
  ~RecordingPanelSurface() override { record_->exists = false; }

  void setContent(const PanelNode& root) override {
    record_->content = root;
    ++record_->contentsSet;
  }
  double fittingHeight() override { return record_->fittingHeight; }
  void scrollToTop() override { record_->calls.emplace_back("top"); }
  void setFrame(const Rect& frame) override {
    record_->frames.push_back(frame);
    record_->calls.emplace_back("frame");
  }
  bool isVisible() const override { return record_->isVisible; }
  bool isKey() const override { return record_->isKey; }
  void showAndMakeKey() override {
    record_->isVisible = true;
    record_->isKey = true;
    record_->calls.emplace_back("show");
  }
  void orderOut() override {
    record_->isVisible = false;
    record_->isKey = false;
    record_->calls.emplace_back("hide");
  }
  void installMonitors() override {
    record_->hasMonitors = true;
    record_->calls.emplace_back("watch");
  }
  void removeMonitors() override {
    record_->hasMonitors = false;
    record_->calls.emplace_back("unwatch");
  }

 private:
  std::shared_ptr<PanelSurfaceRecord> record_;
};

}  // namespace kestrow
