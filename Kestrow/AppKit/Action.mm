#import "Kestrow/AppKit/Action.hpp"

#include <utility>

@implementation KestrowAction {
  std::function<void()> _function;
}

- (instancetype)initWithFunction:(std::function<void()>)function {
  self = [super init];
  if (self) _function = std::move(function);
  return self;
}

- (void)run:(nullable id)sender {
  const auto function = _function;
  function();
}

@end
