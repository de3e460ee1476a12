#pragma once

#include <optional>
#include <string>

#include "l10n/text_id.h"
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
  virtual bool ConfirmBox(TextId text1, TextId text2, TextId caption) = 0;
  // An error the user must see, with the error icon.
  virtual void ErrorBox(TextId text, TextId caption) = 0;
  // The add-site dialog with a title and a prompt; nothing when the user cancelled.
  virtual std::optional<SMAddSiteAnswer> RunAddSite(TextId /*title*/, TextId /*prompt*/) {
    return std::nullopt;
  }
};
