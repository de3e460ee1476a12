#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "settings/site_permissions.h"

// What the user entered in the add-site dialog: the name exactly as typed and the choice.
struct SMAddSiteAnswer {
  std::string site;
  SiteChoice choice = kChoiceAsk;
};

// Everything a page asks the user, so that page logic can be run with scripted answers.
class SMUserPrompts {
 public:
  virtual ~SMUserPrompts() = default;
  // OK/Cancel with Cancel as default; the two texts are shown as two paragraphs. True on OK.
  virtual bool ConfirmBox(uint32_t textId1, uint32_t textId2, uint32_t captionId) = 0;
  // An error the user must see, with the error icon.
  virtual void ErrorBox(uint32_t textId, uint32_t captionId) = 0;
  // The add-site dialog with a title and a prompt; nothing when the user cancelled.
  virtual std::optional<SMAddSiteAnswer> RunAddSite(uint32_t /*titleId*/, uint32_t /*promptId*/) {
    return std::nullopt;
  }
};
