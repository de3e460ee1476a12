// Where a deletion below the player's data folders may go: never through a link on the way,
// never into a data path that was cut.
#include <utility>

#include "platform/platform_services.h"

std::optional<SMPlatformServices::DeletionRefusal> SMPlatformServices::TakeLastRefusal() {
  return std::exchange(lastRefusal_, std::nullopt);
}

std::optional<std::string> SMPlatformServices::LinkOnTheWay(const std::string& path) {
  for (const std::string* root : {&PlayerDataRoot(), &VendorFolder()}) {
    if (root->empty() || path.size() <= root->size() || !IsAtOrBelow(path, *root)) continue;
    // Each folder after the root up to, not including, the path itself.
    for (size_t end = root->size() + 1; end < path.size(); ++end) {
      if (IsPathSeparator(path[end]) && !IsPathSeparator(path[end - 1])) {
        std::string folder = path.substr(0, end);
        if (IsLink(folder)) return folder;
      }
    }
  }
  return std::nullopt;
}

bool SMPlatformServices::DeleteTree(const std::string& path) {
  using Reason = DeletionRefusal::Reason;
  if (IsCutDataPath(path)) {
    lastRefusal_ = DeletionRefusal{Reason::kCutDataPath, path};
    return false;
  }
  // Whatever lies behind a link on the way is not the player's: a folder swapped for a link to
  // another place must not make that place's contents the target of a deletion.
  if (std::optional<std::string> link = LinkOnTheWay(path)) {
    lastRefusal_ = DeletionRefusal{Reason::kLinkOnTheWay, *link};
    return false;
  }
  return DeleteWithoutFollowingLinks(path);
}

bool SMPlatformServices::DeleteBeforeRewrite(const std::string& path) {
  return !IsCutDataPath(path) && DeleteWithoutFollowingLinks(path);
}
