#include "KestrowCore/PanelText.hpp"

#include <algorithm>
#include <utility>

namespace kestrow {

LogContent PanelLogic::log(std::vector<std::string> lines) {
  if (lines.empty()) return {LogContent::Empty{PanelText::logEmpty}};
  std::ranges::reverse(lines);
  return {LogContent::Lines{std::move(lines)}};
}

}  // namespace kestrow
